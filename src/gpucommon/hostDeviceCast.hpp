/// @file
/// Scalar conversions between element types, for host and device. None relies on what the language leaves undefined.
#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

#include "gpucommon/CUDATypes.hpp"

namespace gpucommon {

namespace castdetail {

/// `value` truncated towards zero to an integer; beyond the range of I its nearest end, and 0 for NaN.
template <class I, class F>
GPURUNTIME_HOST_DEVICE I truncateTo(F value) {
  using Limits = std::numeric_limits<I>;
  // 2^digits, the first value above the range, is exact in every floating type; the largest integer may not be.
  constexpr F above = F(2) * static_cast<F>(Limits::max() / 2 + 1);
  constexpr F lowest = static_cast<F>(Limits::min());
  const bool tooHigh = value >= above, tooLow = value <= lowest, isNaN = value != value;
  const I converted = static_cast<I>(tooHigh || tooLow || isNaN ? F(0) : value);
  return tooHigh ? Limits::max() : (tooLow ? Limits::min() : converted);
}

/// `value` rounded to the nearest integer, halves away from zero; beyond the range of I its nearest end, and 0 for NaN.
///
/// For an I of less than 64 bits this is the conversion to `long long`, saturated in turn.
template <class I, class F>
GPURUNTIME_HOST_DEVICE I floating2integer(F value) {
  // From here on every value is an integer, and the sum with a half would be rounded.
  constexpr F firstWithoutFraction = 1 / std::numeric_limits<F>::epsilon();
  const F magnitude = std::abs(value);
  // Just below a half the sum would be rounded up to 1.
  const bool takesHalf = (magnitude >= F(0.5)) & (magnitude < firstWithoutFraction);
  return truncateTo<I>(value + std::copysign(takesHalf ? F(0.5) : F(0), value));
}

/// The conversion of castNumeric between two different real types.
template <class T, class U>
GPURUNTIME_HOST_DEVICE T castReal(const U& value) {
  if constexpr (std::is_same_v<U, bool>) {
    // Any byte but 0 is true, also one that may not be read as a bool.
    return static_cast<T>(bitsOf(value) != 0);
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else if constexpr (std::is_floating_point_v<U>) {
    return floating2integer<T>(value);
  } else {
    return castWithSaturation<T>(value);
  }
}

}  // namespace castdetail

/// `value` as an element of type T. The same type keeps every bit.
///
/// To a floating type: rounded to nearest, ties to even, too large a magnitude to infinity; NaN stays NaN. From a
/// floating type to an integer: rounded to nearest, halves away from zero, clamped to the range of T, NaN to 0. Between
/// integers: clamped. From `bool`: 1 for any byte but 0. To a complex type: by parts, the imaginary part of a real
/// value being 0. There is no conversion from complex to real, and none to `bool`.
template <class T, class U>
GPURUNTIME_HOST_DEVICE T castNumeric(const U& value) {
  static_assert(!std::is_same_v<T, bool>, "the conversion to bool reports NaN and is an operation of its own");
  static_assert(CUDAIsComplex<T>::value || !CUDAIsComplex<U>::value, "no conversion drops an imaginary part");
  using Part = typename CUDAComplexToReal<T>::type;
  if constexpr (std::is_same_v<T, U>) {
    return value;
  } else if constexpr (CUDAIsComplex<U>::value) {
    return T{castNumeric<Part>(value.x), castNumeric<Part>(value.y)};
  } else if constexpr (CUDAIsComplex<T>::value) {
    return T{castNumeric<Part>(value), 0};
  } else {
    return castdetail::castReal<T>(value);
  }
}

}  // namespace gpucommon
