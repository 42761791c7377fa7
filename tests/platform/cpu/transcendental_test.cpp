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

TEST(Transcendental, PowersOfEachSize) {
  std::mt19937_64 generator(7);
  std::uniform_real_distribution<double> uniform(0, 1);
  double worst = 0, worstInFloat = 0;
  const auto check = [&](double x, double y) {
    const double actual = platform::Power<double>(y)(x);
    const long double exact = std::pow(static_cast<long double>(x), static_cast<long double>(y));
    if (const auto nearest = static_cast<double>(exact); std::isnormal(nearest)) {
      worst = std::max(worst, ulps(actual, exact));
    } else {
      EXPECT_TRUE(actual == nearest || std::abs(actual - nearest) <= 0x1p-1074) << x << "^" << y << " " << actual;
    }
  };
  const auto checkInFloat = [&](float x, float y) {
    const long double exact = std::pow(static_cast<long double>(x), static_cast<long double>(y));
    if (const auto nearest = static_cast<float>(exact); std::isnormal(nearest))
      worstInFloat = std::max(worstInFloat, std::abs(ulps(platform::Power<float>(y)(x), exact)) * 0x1p-29);
  };
  for (int i = 0; i < 200000; ++i) {
    const double spread = uniform(generator) - 0.5;
    // Bases close to 1 and of every exponent, with powers over the whole range and a little beyond.
    for (const double x : {1 + spread * std::ldexp(1.0, -i % 52), std::ldexp(1 + uniform(generator), i % 2097 - 1074)})
      if (x != 1) check(x, 2160 * spread / std::log2(x));
    checkInFloat(static_cast<float>(3 * uniform(generator)), static_cast<float>(40 * spread));
  }
  EXPECT_LE(worst, 1.0);
  EXPECT_LE(worstInFloat, 0.51);
}

TEST(Transcendental, PowersOfSpecialValuesAreThoseOfTheCLibrary) {
  const double inf = std::numeric_limits<double>::infinity(), NaN = std::numeric_limits<double>::quiet_NaN();
  const std::vector<double> values = {0.0,
                                      1,
                                      0.5,
                                      2,
                                      3,
                                      1.5,
                                      inf,
                                      NaN,
                                      1e300,
                                      5e-324,
                                      0x1p53,
                                      0x1.0000001p66,
                                      0x1p1000,
                                      std::nextafter(1.0, 2),
                                      std::nextafter(1.0, 0)};
  for (double x : values)
    for (double y : values)
      for (const double signOfX : {1.0, -1.0})
        for (const double signOfY : {1.0, -1.0}) {
          const double a = signOfX * x, b = signOfY * y, expected = std::pow(a, b);
          const double actual = platform::Power<double>(b)(a);
          if (std::isnan(expected) || std::isnan(actual)) {
            EXPECT_TRUE(std::isnan(expected) && std::isnan(actual)) << a << "^" << b;
          } else {
            EXPECT_EQ(std::signbit(actual), std::signbit(expected)) << a << "^" << b;
            EXPECT_TRUE(actual == expected || std::abs(actual / expected - 1) <= 0x1p-52) << a << "^" << b;
          }
        }
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
