#include "support/familytest.hpp"

#include <complex>

namespace {

using namespace testsupport;

// volatile keeps the compiler from fusing what the rule rounds step by step.
double realValue(double start, double stop, double n, double i) {
  volatile const double d = stop - start, m = n - 1;
  if (!std::isinf(d)) {
    volatile const double product = i * d;
    volatile const double ratio = product / m;
    return ratio + start;
  }
  volatile const double p = stop / m, q = start / m;
  volatile const double product = q * i;
  return std::fma(p, i, start) - product;
}

float realValue(float start, float stop, double n, double i) {
  volatile const float d = stop - start;
  volatile const double m = n - 1;
  const auto scaled = [&](float end) {
    volatile const double ratio = static_cast<double>(end) / m;
    volatile const double product = ratio * i;
    return static_cast<float>(product);
  };
  if (!std::isinf(d)) {
    volatile const double product = static_cast<double>(d) * i;
    volatile const float ratio = static_cast<float>(product / m);
    return ratio + start;
  }
  volatile const float sum = scaled(stop) + start;
  return sum - scaled(start);
}

template <class T>
T value(T start, T stop, unsigned long n, unsigned long i) {
  if (i == n - 1) return stop;
  const auto count = static_cast<double>(n), index = static_cast<double>(i);
  if constexpr (isComplex<T>) {
    return {realValue(start.x, stop.x, count, index), realValue(start.y, stop.y, count, index)};
  } else {
    return realValue(start, stop, count, index);
  }
}

template <class T>
struct LinspaceTest : ::testing::Test {};
TYPED_TEST_SUITE(LinspaceTest, TestTypes<gpuruntime::FloatTypes>);

template <class T>
void checkLinspace(unsigned long n, T start, T stop) {
  GuardedArray<T> out(n, 1);
  typename gpuruntime::Linspace::Invoker<T>()(nullptr, n, out.data(), start, stop);
  expectElements(
      out.toHost(), [&](unsigned long i) { return value(start, stop, n, i); }, "n = " + std::to_string(n));
}

TYPED_TEST(LinspaceTest, FollowsTheRuleStepByStep) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    if constexpr (isComplex<T>) {
      using Real = decltype(T::x);
      const Real large = std::numeric_limits<Real>::max() / 2;
      checkLinspace<T>(n, {Real(0.1), -3}, {Real(2.7), 11});
      // The difference of one part overflows, of the other not, and both ways round.
      checkLinspace<T>(n, {-large * Real(1.5), 1}, {large, 2});
      checkLinspace<T>(n, {1, large}, {2, -large * Real(1.5)});
    } else {
      const T large = std::numeric_limits<T>::max() / 2;
      checkLinspace<T>(n, T(0.1), T(2.7));
      checkLinspace<T>(n, T(1e-3), T(-5));
      checkLinspace<T>(n, -large * T(1.5), large);
      checkLinspace<T>(n, large * T(1.9), -large);
    }
  }
}

TEST(Linspace, EndsExactlyAndKeepsTheStatedForms) {
  const auto elements = [](unsigned long n, auto start, auto stop) {
    using T = decltype(start);
    GuardedArray<T> out(n);
    typename gpuruntime::Linspace::Invoker<T>()(nullptr, n, out.data(), start, stop);
    return out.toHost();
  };
  EXPECT_EQ(elements(1, 3.0, 8.0)[0], 8.0);
  EXPECT_EQ(elements(2, 0.1, 0.3)[0], 0.1);
  EXPECT_EQ(elements(3, -1e308, 1e308)[1], 0.0);
  EXPECT_EQ(elements(11, 0.0F, 1.0F)[3], 0.3F);
  // The product i * d overflows although d does not: computed as written.
  EXPECT_TRUE(std::isinf(elements(4, 0.0, 1.5e308)[2]));
  // A NaN start leaves the last element alone.
  const auto fromNaN = elements(3, std::nan(""), 2.0);
  EXPECT_TRUE(std::isnan(fromNaN[0]) && std::isnan(fromNaN[1]));
  EXPECT_EQ(fromNaN[2], 2.0);
}

template <class T>
double relativeError(T actual, T expected) {
  return std::abs(static_cast<double>((actual - expected) / expected));
}

template <class T>
void checkRealLogspace() {
  const double tolerance = 4 * static_cast<double>(std::numeric_limits<T>::epsilon());
  const unsigned long n = 1001;
  GuardedArray<T> out(n);
  typename gpuruntime::Logspace::Invoker<T>()(nullptr, n, out.data(), T(-5), T(5));
  const HostArray<T> actual = out.toHost();
  for (unsigned long i = 0; i < n; ++i) {
    const T exponent = value(T(-5), T(5), n, i);
    if (std::floor(exponent) != exponent) {
      const auto expected = static_cast<T>(std::pow(10.0L, static_cast<long double>(exponent)));
      EXPECT_LE(relativeError(actual[i], expected), tolerance) << "exponent " << exponent;
      continue;
    }
    // Integer exponents are products in T, exact up to here, and the rounded reciprocal of one.
    T power = 1;
    for (int k = 0; k < std::abs(static_cast<int>(exponent)); ++k) power *= 10;
    EXPECT_EQ(actual[i], exponent < 0 ? T(1) / power : power) << "exponent " << exponent;
  }
}

TEST(Logspace, TakesIntegerPowersByProducts) {
  checkRealLogspace<double>();
  checkRealLogspace<float>();
  // Beyond exact products the squarings decide the last bits: ((10^2)^2)^2 ... from the lowest bit up.
  GuardedArray<double> out(1);
  gpuruntime::Logspace::Invoker<double>()(nullptr, 1, out.data(), 0, 29);
  const double e2 = 10.0 * 10.0, e4 = e2 * e2, e8 = e4 * e4, e16 = e8 * e8;
  EXPECT_EQ(out.toHost()[0], ((10.0 * e4) * e8) * e16);
}

template <class T>
void checkComplexLogspace() {
  using Real = decltype(T::x);
  const double tolerance = 40 * static_cast<double>(std::numeric_limits<Real>::epsilon());
  const T start{-1, 0}, stop{2, 3};
  const unsigned long n = 1000;
  GuardedArray<T> out(n);
  typename gpuruntime::Logspace::Invoker<T>()(nullptr, n, out.data(), start, stop);
  const HostArray<T> actual = out.toHost();
  for (unsigned long i = 0; i < n; ++i) {
    const T exponent = value(start, stop, n, i);
    const auto expected = std::pow(10.0L, std::complex<long double>(exponent.x, exponent.y));
    const auto distance = std::abs(std::complex<long double>(actual[i].x, actual[i].y) - expected);
    EXPECT_LE(static_cast<double>(distance / std::abs(expected)), tolerance) << "element " << i;
  }
}

TEST(Logspace, TakesComplexPowers) {
  checkComplexLogspace<double2>();
  checkComplexLogspace<float2>();
  // Real integer exponents multiply: exact, with an imaginary part that is exactly 0.
  GuardedArray<double2> out(3);
  gpuruntime::Logspace::Invoker<double2>()(nullptr, 3, out.data(), {0, 0}, {2, 0});
  const double2 expected[] = {{1, 0}, {10, 0}, {100, 0}};
  expectElements(out.toHost(), [&](unsigned long i) { return expected[i]; });
}

}  // namespace
