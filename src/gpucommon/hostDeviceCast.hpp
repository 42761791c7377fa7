/// @file
/// Scalar conversions between element types, for host and device. None relies on what the language leaves undefined.
#pragma once

#include <limits>

#include "platform/platform.hpp"

namespace gpucommon::castdetail {

/// `value` truncated towards zero to a 32- or 64-bit integer; beyond the range of I its nearest end, and 0 for NaN.
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

}  // namespace gpucommon::castdetail
