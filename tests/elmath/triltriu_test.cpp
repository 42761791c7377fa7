#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct TriangleTest : ::testing::Test {};
TYPED_TEST_SUITE(TriangleTest, TestTypes<gpuruntime::AllTypes>);

/// Which elements of a matrix stay and which become one, by their distance below the main diagonal.
template <class Family, class T, class Keeps, class IsOne>
void check(unsigned long rows, unsigned long columns, long k, Keeps keeps, IsOne isOne) {
  T one;
  if constexpr (isComplex<T>) {
    one = T{1, 0};
  } else {
    one = 1;
  }
  const HostArray<T> in = HostArray<T>::counting(rows * columns);
  for (const bool inPlace : {false, true}) {
    GuardedArray<T> input(in, 1), output(in.size(), 3);
    T* const target = inPlace ? input.data() : output.data();
    typename Family::template Invoker<T>()(nullptr, target, input.data(), k, rows, columns);
    expectElements((inPlace ? input : output).toHost(),
                   [&](unsigned long i) {
                     const long below = static_cast<long>(i % rows) - static_cast<long>(i / rows);
                     return keeps(below) ? in[i] : isOne(below) ? one : T{};
                   },
                   std::to_string(rows) + " by " + std::to_string(columns) + ", diagonal " + std::to_string(k));
  }
}

TYPED_TEST(TriangleTest, KeepTheirSideOfADiagonal) {
  using T = TypeParam;
  // The last two are large enough to be written past the caches.
  const unsigned long large = (17UL << 18) / sizeof(T);
  const unsigned long shapes[][2] = {{2, 2},  {1, 300}, {300, 1}, {5, 70},        {256, 40},
                                     {40, 9}, {0, 3},   {3, 0},   {3, large / 3}, {1051, large / 1051}};
  const long farAway = std::numeric_limits<long>::max() / 2;
  const std::vector<long> diagonals{-100, 0, 1, -1, 2, -2, 17, -38, farAway, -farAway};
  for (const auto& [rows, columns] : shapes) {
    const bool isLarge = rows * columns > 20000;
    for (const long k : isLarge ? std::vector<long>{-100} : diagonals) {
      const auto never = [](long) { return false; };
      check<gpuruntime::TriLower, T>(
          rows, columns, k, [=](long below) { return below >= -k; }, never);
      check<gpuruntime::TriUpper, T>(
          rows, columns, k, [=](long below) { return below <= -k; }, never);
      check<gpuruntime::TriLowerOneOnDiag, T>(
          rows, columns, k, [=](long below) { return below > -k; }, [=](long below) { return below == -k; });
    }
  }
}

}  // namespace
