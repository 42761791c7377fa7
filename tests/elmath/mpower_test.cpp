#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;
using gpuruntime::MPowerMatrixScalar;
using gpuruntime::MPowerScalarMatrix;

template <class T>
struct MPowerTest : ::testing::Test {
  // The output of a family for a V of counted bits, over the diagonal d.
  template <class Family>
  static HostArray<T> run(const HostArray<T>& V, const HostArray<T>& d, T s) {
    const GuardedArray<T> matrix(V, 1), diagonal(d);
    GuardedArray<T> output(V.size());
    typename Family::template Invoker<T>()(nullptr, output.data(), matrix.data(), diagonal.data(), s, d.size());
    return output.toHost();
  }
};
TYPED_TEST_SUITE(MPowerTest, TestTypes<gpuruntime::RealFloatTypes>);

TYPED_TEST(MPowerTest, ScalesEachColumnByItsPower) {
  using T = TypeParam;
  for (const unsigned long n : {0UL, 1UL, 2UL, 255UL, 256UL, 257UL, 300UL, 600UL}) {
    HostArray<T> V(n * n), d(n);
    for (unsigned long i = 0; i < n * n; ++i) V[i] = static_cast<T>(i % 97) / 7 - 5;
    for (unsigned long i = 0; i < n; ++i) d[i] = static_cast<T>(i % 5);
    // Small integers: the powers are exact.
    const auto squared = this->template run<MPowerMatrixScalar>(V, d, 3);
    expectElements(squared, [&](unsigned long i) { return V[i] * (d[i / n] * d[i / n] * d[i / n]); });
    const auto doubled = this->template run<MPowerScalarMatrix>(V, d, 2);
    expectElements(doubled, [&](unsigned long i) { return V[i] * std::ldexp(T(1), static_cast<int>(i / n % 5)); });
  }
}

TYPED_TEST(MPowerTest, KeepsSpecialColumnsApart) {
  using T = TypeParam;
  const T NaN = std::numeric_limits<T>::quiet_NaN();
  const HostArray<T> V = arrayOf(std::vector<T>{1, 2, 3, 4, 5, 6, 7, 8, 9});
  const HostArray<T> roots = this->template run<MPowerMatrixScalar>(V, arrayOf(std::vector<T>{4, -4, 9}), T(0.5));
  expectElements(roots, [&](unsigned long i) { return i < 3 ? V[i] * 2 : i < 6 ? roots[i] : V[i] * 3; });
  for (unsigned long i = 3; i < 6; ++i) EXPECT_TRUE(std::isnan(roots[i]));
  const HostArray<T> ones = this->template run<MPowerMatrixScalar>(V, arrayOf(std::vector<T>{NaN, 0, -7}), 0);
  expectElements(ones, [&](unsigned long i) { return V[i]; });
  const HostArray<T> halves = this->template run<MPowerScalarMatrix>(V, arrayOf(std::vector<T>{3, -1, 0}), 2);
  expectElements(halves, [&](unsigned long i) { return V[i] * (i < 3 ? T(8) : i < 6 ? T(0.5) : T(1)); });
}

template <class T>
struct MPowerComplexTest : MPowerTest<T> {};
TYPED_TEST_SUITE(MPowerComplexTest, TestTypes<gpuruntime::ComplexFloatTypes>);

TYPED_TEST(MPowerComplexTest, MultipliesByComplexPowers) {
  using T = TypeParam;
  const HostArray<T> V = arrayOf(std::vector<T>{{1, 2}, {3, -4}, {-5, 6}, {0, 1}});
  // i^2 = -1 and (1 + i)^2 = 2i, by products alone.
  const HostArray<T> squared =
      this->template run<MPowerMatrixScalar>(V, arrayOf(std::vector<T>{{0, 1}, {1, 1}}), {2, 0});
  const std::vector<T> expected{{-1, -2}, {-3, 4}, {-12, -10}, {-2, 0}};
  // The root of -4 is 2i, which leaves the last bits to the platform.
  const HostArray<T> roots =
      this->template run<MPowerMatrixScalar>(V, arrayOf(std::vector<T>{{-4, 0}, {4, 0}}), {0.5, 0});
  const std::vector<T> expectedRoots{{-4, 2}, {8, 6}, {-10, 12}, {0, 2}};
  for (unsigned long i = 0; i < 4; ++i) {
    EXPECT_EQ(squared[i].x, expected[i].x);
    EXPECT_EQ(squared[i].y, expected[i].y);
    EXPECT_NEAR(roots[i].x, expectedRoots[i].x, 1e-5);
    EXPECT_NEAR(roots[i].y, expectedRoots[i].y, 1e-5);
  }
}

}  // namespace
