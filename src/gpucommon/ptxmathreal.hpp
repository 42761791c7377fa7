/// @file
/// Real scalar operations on `double` and `float`, for host and device. All are pure, and each step is rounded by
/// itself.
#pragma once

#include <cmath>
#include <limits>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/hostDeviceCast.hpp"

namespace gpucommon::scalarmath {

/// True if x equals 0, also -0. A comparison with NaN is false, so NaN needs no test of its own.
template <class T>
GPURUNTIME_HOST_DEVICE bool ptxIsZeroAndNotNaN(T x) {
  return x == 0;
}

/// The quiet NaN with the sign bit set.
template <class T>
GPURUNTIME_HOST_DEVICE T ptxGetNaN() {
  // The sign of a negated NaN is left open on some devices; copysign sets the bit everywhere.
  return std::copysign(std::numeric_limits<T>::quiet_NaN(), T(-1));
}

/// Pi rounded to T.
template <class T>
GPURUNTIME_HOST_DEVICE T ptxPi() {
  return static_cast<T>(3.14159265358979323846);
}

/// x rounded towards zero, with the sign of x; NaN stays NaN.
template <class T>
GPURUNTIME_HOST_DEVICE T fix(T x) {
  return std::trunc(x);
}

/// True if x is an integer or infinite; false for NaN.
template <class T>
GPURUNTIME_HOST_DEVICE bool isIntegerValued(T x) {
  return std::floor(x) == x;
}

/// sqrt(a^2 + b^2) without overflow on the way; NaN if a or b is NaN, also beside an infinity.
template <class T>
GPURUNTIME_HOST_DEVICE T hypot(T a, T b) {
  const bool hasNaN = a != a || b != b;
  return hasNaN ? ptxGetNaN<T>() : std::hypot(a, b);
}

/// True if the remainder of x by y is to be taken as 0, as x / y is an integer but for its rounding error. False if y
/// is an integer, or x or y is not finite.
template <class T>
GPURUNTIME_HOST_DEVICE bool updateRemModForVANTICEdgeCases(T x, T y) {
  constexpr T infinity = std::numeric_limits<T>::infinity();
  const bool finite = std::abs(x) < infinity && std::abs(y) < infinity;
  const T quotient = x / y;
  const T nearest = std::round(quotient);
  // An overflowed quotient equals its rounding but has no distance from it.
  const bool nearInteger =
      std::abs(quotient - nearest) <= std::abs(quotient) * std::numeric_limits<T>::epsilon() || quotient == nearest;
  return finite && !isIntegerValued(y) && nearInteger;
}

/// `base` to the power `exponent` by repeated squaring from the lowest bit, each product rounded by itself; a negative
/// exponent takes the rounded reciprocal of the rounded power.
template <class T>
GPURUNTIME_HOST_DEVICE T integerPower(T base, int exponent) {
  // In unsigned arithmetic the smallest int has a magnitude too.
  unsigned int bits = exponent < 0 ? 0u - static_cast<unsigned int>(exponent) : static_cast<unsigned int>(exponent);
  T result = 1;
  for (; bits != 0; bits >>= 1) {
    if (bits & 1) result *= base;
    base *= base;
  }
  return exponent < 0 ? T(1) / result : result;
}

/// x to the power y: repeated squaring if both are integers or infinite, with y truncated to `int` and saturating;
/// otherwise `Power`.
template <class T>
GPURUNTIME_HOST_DEVICE T integerOrFloatingPower(T x, T y) {
  if (isIntegerValued(x) && isIntegerValued(y)) return integerPower(x, castdetail::truncateTo<int>(y));
  return gpuruntime::platform::Power<T>(y)(x);
}

/// x to the power y as integerOrFloatingPower gives it, made non-negative where y is even. A negative x with a y that
/// is no integer gives what `Power` gives: NaN, if x is finite.
template <class T>
GPURUNTIME_HOST_DEVICE T realPower(T x, T y) {
  const T power = integerOrFloatingPower(x, y);
  // In double for both types. Beyond the range of int the exponent's own parity may differ from that of the truncated
  // one, and only an even one is repaired; a NaN or infinite y gives no remainder and repairs nothing.
  const double exponent = y;
  const double remainder = exponent - 2 * std::floor(exponent / 2);
  return remainder == 0 ? std::abs(power) : power;
}

}  // namespace gpucommon::scalarmath
