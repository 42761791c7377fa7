/// @file
/// Real scalar operations that report a data error through the device error word of the unit that includes this.
///
/// The word is the unit's own, so what raises has internal linkage: merged across units, a raise would reach another
/// unit's word. Templates of headers that call it must have internal linkage, too.
#pragma once

#include "gpucommon/ptxmathreal.hpp"

namespace gpucommon {

/// What a device error word holds.
struct PtxError {
  enum ErrorCode : unsigned int {
    NeverArmed = 0,
    NoError = 1000,
    NegativeBaseWithFractionalExponent = 1014,
    NaNToLogical = 1023,
    SubscriptOutOfRange = 1030,
    WordNotReadable = 1037
  };
};

}  // namespace gpucommon

// The block-local companion of the word, which would be written at each raise and read by nothing, is left out.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the word's public name.
GPURUNTIME_DEVICE_SYMBOL(unsigned int, __QRD_PTX_ERROR_CODE);

namespace gpucommon::scalarmath {

/// Raises `code` in an armed error word and returns ptxGetNaN. The first error wins; an unarmed word stays as it is.
template <class T, unsigned int code>
static GPURUNTIME_DEVICE T errorbody() {
  gpuruntime::platform::atomicCAS(&__QRD_PTX_ERROR_CODE, PtxError::NoError, code);
  return ptxGetNaN<T>();
}

/// realPower, which raises NegativeBaseWithFractionalExponent for x < 0 and a y that is neither integer nor infinite,
/// NaN included.
template <class T>
static GPURUNTIME_DEVICE T realPowerOrRaise(T x, T y) {
  if (x < 0 && !isIntegerValued(y)) errorbody<T, PtxError::NegativeBaseWithFractionalExponent>();
  return realPower(x, y);
}

}  // namespace gpucommon::scalarmath
