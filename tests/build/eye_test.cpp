#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct EyeTest : ::testing::Test {};
TYPED_TEST_SUITE(EyeTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(EyeTest, WritesTheDiagonalAndNothingElse) {
  using T = TypeParam;
  T one;
  if constexpr (isComplex<T>) {
    one = T{1, 0};
  } else {
    one = 1;
  }
  const unsigned long shapes[][2] = {{3, 3}, {2, 5}, {5, 2}, {1, 1}, {300, 257}};
  for (const auto& [rows, columns] : shapes) {
    const unsigned long n = std::min(rows, columns);
    GuardedArray<T> out(rows * columns);
    typename gpuruntime::Eye::Invoker<T>()(nullptr, n, out.data(), rows);
    const HostArray<T> actual = out.toHost();
    for (unsigned long i = 0; i < actual.size(); ++i) {
      const bool isOnDiagonal = i % rows == i / rows;
      EXPECT_TRUE(isOnDiagonal ? sameBits(actual[i], one) : isUntouched(actual, i)) << "element " << i;
    }
  }
  GuardedArray<T> untouched(4);
  typename gpuruntime::Eye::Invoker<T>()(nullptr, 0, untouched.data(), 2);
  expectUntouched(untouched.toHost());
}

}  // namespace
