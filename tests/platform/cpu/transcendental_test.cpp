#include "platform/platform.hpp"

#include <gtest/gtest.h>
#include <boost/math/special_functions/erf.hpp>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

namespace platform = gpuruntime::platform;

double ulps(double actual, long double expected) {
  const auto nearest = static_cast<double>(expected);
  return static_cast<double>(std::abs(actual - expected)) /
         (std::nextafter(std::abs(nearest), std::numeric_limits<double>::infinity()) - std::abs(nearest));
}

// Values of (0, 1): evenly distributed, and close to both ends.
std::vector<double> fractions() {
  std::mt19937_64 engine(7);
  std::vector<double> values{0x1p-1022, 0x1p-53, 0.5, 0.70710678118654746, 0.70710678118654757, 1 - 0x1p-53};
  for (int i = 0; i < 60000; ++i) {
    const double u = std::ldexp(static_cast<double>((engine() >> 11) | 1), -53);
    values.insert(values.end(), {u, std::ldexp(u, -(i % 60)), 1 - std::ldexp(u, -(i % 52))});
  }
  return values;
}

TEST(Transcendental, LogarithmOfNormalNumbers) {
  double worst = 0;
  for (const double u : fractions()) {
    if (u == 1) continue;
    for (const double x : {u, 1 / u, 1 + u})
      worst = std::max(worst, ulps(platform::logOfNormal(x), std::log(static_cast<long double>(x))));
  }
  EXPECT_LE(worst, 1.0);
  EXPECT_EQ(platform::logOfNormal(1), 0);
}

TEST(Transcendental, SineAndCosineOfATurn) {
  double worst = 0;
  const auto check = [&](double x) {
    double sine, cosine;
    platform::sincosOfTurn(x, &sine, &cosine);
    const long double exact = x;
    worst = std::max({worst, ulps(sine, std::sin(exact)), ulps(cosine, std::cos(exact))});
  };
  for (const double u : fractions()) check(6.283185307179586 * u);
  // Where one of them is close to 0, a relative error shows most.
  for (int quarter = 0; quarter <= 4; ++quarter) {
    for (int i = -2000; i <= 2000; ++i) {
      const double x = quarter * 1.5707963267948966 + i * 2.3e-16;
      if (x >= 0x1p-1000) check(x);
    }
  }
  EXPECT_LE(worst, 1.0);
}

TEST(Transcendental, InverseOfErfcAloneAndForABlock) {
  double worst = 0;
  std::vector<double> arguments;
  for (const double u : fractions()) {
    const double x = 2 * u;
    if (x == 2) continue;
    arguments.push_back(x);
    worst = std::max(worst, ulps(platform::erfcinv(x), boost::math::erfc_inv(static_cast<long double>(x))));
  }
  EXPECT_LE(worst, 6.0);
  EXPECT_EQ(platform::erfcinv(0), std::numeric_limits<double>::infinity());
  EXPECT_EQ(platform::erfcinv(2), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(platform::erfcinv(1), 0);

  const platform::Block<64> block({0, 0, 0}, {1, 1, 1}, {64, 1, 1});
  for (const unsigned long live : {64UL, 37UL}) {
    for (std::size_t first = 0; first + 64 <= 6400; first += 64) {
      platform::PerThread<double, 64> values;
      block.forEachThread([&](platform::Thread thread) { values[thread] = arguments[first + thread.x]; });
      platform::erfcinvOfEach(block, platform::Live{live}, values);
      block.forEachThread(platform::Live{live}, [&](platform::Thread thread) {
        if (platform::isIdle(thread.x >= live)) return;
        EXPECT_EQ(values[thread], platform::erfcinv(arguments[first + thread.x]));
      });
    }
  }
}

TEST(Transcendental, IntegersBecomeExactDoubles) {
  for (unsigned long bit = 0; bit <= 53; ++bit) {
    for (const unsigned long x : {(1UL << bit) - 1, 1UL << bit, (1UL << bit) / 3}) {
      EXPECT_EQ(static_cast<unsigned long>(platform::exactDouble(x)), x);
    }
  }
}

}  // namespace
