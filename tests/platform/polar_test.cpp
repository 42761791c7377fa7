#include "platform/platform.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

namespace platform = gpuruntime::platform;

template <class R>
class Polar : public testing::Test {
 protected:
  using Limits = std::numeric_limits<R>;

  // Units in the last place; 0 for the same special value, and for NaN where NaN is due.
  static double ulps(R actual, long double expected) {
    const R nearest = static_cast<R>(expected);
    if (std::isnan(nearest)) return std::isnan(actual) ? 0 : 1e300;
    if (actual == nearest) return std::signbit(actual) == std::signbit(nearest) ? 0 : 1e300;
    const R magnitude = std::abs(nearest);
    return static_cast<double>(std::abs(actual - expected) /
                               (std::nextafter(magnitude, Limits::infinity()) - magnitude));
  }

  void check(R y, R x) {
    const long double exactY = y, exactX = x;
    ASSERT_LE(ulps(platform::atan2(y, x), std::atan2(exactY, exactX)), sizeof(R) == 8 ? 2 : 1) << y << ", " << x;
    ASSERT_LE(ulps(platform::hypot(y, x), std::hypot(exactY, exactX)), sizeof(R) == 8 ? 2 : 1) << y << ", " << x;
  }
};

using RealFloats = testing::Types<double, float>;
TYPED_TEST_SUITE(Polar, RealFloats);

TYPED_TEST(Polar, AnglesAndMagnitudesOfAllSizesAndSpecialValues) {
  using R = TypeParam;
  using Limits = std::numeric_limits<R>;
  std::vector<R> parts{
      0, Limits::denorm_min(), Limits::min(), R(0.4375),          R(0.6875),          1, 1 + Limits::epsilon(), 3,
      4, Limits::max() / 4,    Limits::max(), Limits::infinity(), Limits::quiet_NaN()};
  for (unsigned long i = 0, n = parts.size(); i < n; ++i) parts.push_back(-parts[i]);
  for (const R y : parts) {
    for (const R x : parts) this->check(y, x);
  }
  std::mt19937_64 engine(3);
  std::uniform_real_distribution<R> fraction(-1, 1);
  std::uniform_int_distribution<int> exponent(Limits::min_exponent + 2, Limits::max_exponent - 2);
  for (int i = 0; i < 100000; ++i) {
    const int k = exponent(engine);
    // Parts of about the same size, and of sizes that differ by up to 2^30.
    this->check(std::ldexp(fraction(engine), k), std::ldexp(fraction(engine), k));
    this->check(fraction(engine), std::ldexp(fraction(engine), static_cast<int>(engine() % 61) - 30));
  }
}

}  // namespace
