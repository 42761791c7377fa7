/// @file
/// Powers in loops over many bases, made as polar.hpp is: the same bits on every backend and at every vector level.
#pragma once

#include "bits.hpp"

#include <cmath>
#include <cstdint>
#include <limits>

namespace gpuruntime::platform {
namespace detail {

// What stays has 21 bits, so that a product of two such numbers is exact.
GPURUNTIME_INLINE double withoutLowWord(double x) {
  return doubleOf(bitsOf(x) & 0xFFFFFFFF00000000);
}

// To the nearest integer, of which the lowest bits of the sum hold the lowest.
GPURUNTIME_INLINE double nearestInteger(double x) {
  return (x + 0x1.8p52) - 0x1.8p52;
}

// 2^n for an integer n from -1023 to 1023; 2^-1023 becomes 0.
GPURUNTIME_INLINE double powerOfTwo(double n) {
  return doubleOf(bitsOf(n + (0x1p52 + 1023.0)) << 52);
}

// 2^(high + low) for a low below the last place of high, both below 2^80.
GPURUNTIME_INLINE double exp2OfSum(double high, double low) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double sum = high + low, n = nearestInteger(sum), rest = high - n;
  const double t = withoutLowWord(low + rest);
  const double leading = t * 6.93147182464599609375e-01;
  const double trailing = (low - (t - rest)) * 6.93147180559945286227e-01 + t * -1.90465429995776804525e-09;
  const double z = leading + trailing, w = trailing - (z - leading), z2 = z * z, z4 = z2 * z2;
  const double c = z - (z2 * 1.66666666666666019037e-01 +
                        z4 * ((-2.77777777770155933842e-03 + z2 * 6.61375632143793436117e-05) +
                              z4 * (-1.65339022054652515390e-06 + z2 * 4.13813679705723846039e-08)));
  const double exponential = 1.0 - (((z * c) / (c - 2.0) - (w + z * w)) - z);
  // In two steps, as 2^n may be neither normal nor finite where the power is.
  const double half = nearestInteger(n * 0.5);
  const double power = exponential * powerOfTwo(half) * powerOfTwo(n - half);
  return sum > 1100.0 ? infinity : (sum < -1100.0 ? 0.0 : power);
}

// A positive finite number as 2^n * m, sqrt(3) / 2 <= m < sqrt(3), with b, the nearer of 1 and 3 / 2 to m, and its
// binary logarithm as the sum of two.
struct Reduced {
  double n, m, b, log2High, log2Low;
};
GPURUNTIME_INLINE Reduced reduced(double x) {
  const bool isSubnormal = x < 0x1p-1022;
  constexpr std::uint64_t lowest = 0x3FEBB67AE8584CAA, one = 0x3FF0000000000000;
  const std::uint64_t shifted = bitsOf(isSubnormal ? x * 0x1p54 : x) + (one - lowest);
  const double m = doubleOf((shifted & 0x000FFFFFFFFFFFFF) + lowest);
  // Behind the leading bit of 2^52 the exponent's bits are a number.
  const double n = doubleOf(shifted >> 52 | 0x4330000000000000) - (0x1p52 + (isSubnormal ? 1077.0 : 1023.0));
  const bool isUpper = m > 1.224744871391589;
  return {n, m, isUpper ? 1.5 : 1.0, isUpper ? 5.84962487220764160156e-01 : 0.0,
          isUpper ? 1.35003920212974897128e-08 : 0.0};
}

// log(m / b) = 2 / 3 * s * (3 + s^2 + r) with s = (m - b) / (m + b): r.
GPURUNTIME_INLINE double seriesOfLog(double s2) {
  const double s4 = s2 * s2;
  return s4 * ((5.99999999999994648725e-01 + s2 * 4.28571428578550184252e-01) +
               s4 * ((3.33333329818377432918e-01 + s2 * 2.72728123808534006489e-01) +
                     s4 * (2.30660745775561754067e-01 + s2 * 2.06975017800338417784e-01)));
}

// The binary logarithm of a positive finite number, within 2^-52 or 2 units in the last place.
GPURUNTIME_INLINE double log2(double x) {
  const Reduced part = reduced(x);
  const double s = (part.m - part.b) / (part.m + part.b), square = s * s;
  const double ofQuotient = 9.61796693925975554329e-01 * (s * (3.0 + (square + seriesOfLog(square))));
  return part.n + (part.log2High + (part.log2Low + ofQuotient));
}

// The same as the sum of two, of which the first has 21 bits, within 2^-64 or as close in proportion.
GPURUNTIME_INLINE void log2AsSum(double x, double* high, double* low) {
  const Reduced part = reduced(x);
  const double n = part.n, b = part.b;
  const double difference = part.m - b, sum = part.m + b, reciprocal = 1.0 / sum, s = difference * reciprocal;
  const double sHigh = withoutLowWord(s), sumHigh = withoutLowWord(sum), sumLow = part.m - (sumHigh - b);
  const double sLow = reciprocal * ((difference - sHigh * sumHigh) - sHigh * sumLow);

  const double squareOfHigh = sHigh * sHigh;
  const double r = seriesOfLog(s * s) + sLow * (sHigh + s);
  const double factorHigh = withoutLowWord(3.0 + squareOfHigh + r), factorLow = r - ((factorHigh - 3.0) - squareOfHigh);
  const double leading = sHigh * factorHigh, trailing = sLow * factorHigh + factorLow * s;

  // Times 2 / (3 log(2)), with log2(b) and n on top.
  const double productHigh = withoutLowWord(leading + trailing), productLow = trailing - (productHigh - leading);
  const double logHigh = 9.61796700954437255859e-01 * productHigh;
  const double logLow =
      -7.02846165095275826516e-09 * productHigh + productLow * 9.61796693925975554329e-01 + part.log2Low;
  *high = withoutLowWord(((logHigh + logLow) + part.log2High) + n);
  *low = logLow - (((*high - n) - part.log2High) - logHigh);
}

}  // namespace detail

/// x^y for one y and many x, with the special cases of the C library's `pow`. In double within 1 unit in the last
/// place, in float rounded from a double that is as good.
///
/// The logarithm of x as two numbers, times y, goes into the exponential. The method and the coefficients are those of
/// pow in Sun's fdlibm (1993).
template <class T>
class Power {
 public:
  GPURUNTIME_INLINE explicit Power(T exponent) {
    constexpr double infinity = std::numeric_limits<double>::infinity(), NaN = std::numeric_limits<double>::quiet_NaN();
    const double y = exponent;
    const bool isInteger = std::floor(y) == y, isOdd = isInteger && std::floor(y * 0.5) != y * 0.5;
    // Of larger exponents every power but that of 1 is 0 or infinite.
    m_y = y > 0x1p66 ? 0x1p66 : (y < -0x1p66 ? -0x1p66 : y);
    m_ofZero = y > 0 ? 0.0 : (y < 0 ? infinity : (y == 0 ? 1.0 : NaN));
    m_ofInfinity = y > 0 ? infinity : (y < 0 ? 0.0 : m_ofZero);
    m_ofNaN = y == 0 ? 1.0 : NaN;
    m_factorOfNegative = isInteger ? 1.0 : NaN;
    m_signs = isOdd ? 0x8000000000000000 : 0;
  }

  GPURUNTIME_INLINE T operator()(T base) const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double x = base, magnitude = std::abs(x);
    double power = ofMagnitude(magnitude);
    power = x < 0 ? power * m_factorOfNegative : power;
    power = magnitude == 0 ? m_ofZero : power;
    power = magnitude == infinity ? m_ofInfinity : power;
    power = detail::doubleOf(detail::bitsOf(power) ^ (detail::bitsOf(x) & m_signs));
    power = x != x ? m_ofNaN : power;
    return static_cast<T>(x == 1 ? 1.0 : power);
  }

 private:
  GPURUNTIME_INLINE double ofMagnitude(double x) const {
    if constexpr (sizeof(T) == sizeof(float)) {
      return detail::exp2OfSum(m_y * detail::log2(x), 0.0);
    } else {
      double high, low;
      detail::log2AsSum(x, &high, &low);
      const double yHigh = detail::withoutLowWord(m_y);
      return detail::exp2OfSum(yHigh * high, (m_y - yHigh) * high + m_y * low);
    }
  }

  double m_y, m_ofZero, m_ofInfinity, m_ofNaN, m_factorOfNegative;
  std::uint64_t m_signs;
};

}  // namespace gpuruntime::platform
