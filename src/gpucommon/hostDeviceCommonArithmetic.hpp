/// @file
/// Integer helpers for sizes and indices, for host and device.
#pragma once

#include "platform/platform.hpp"

namespace gpucommon::hostDeviceMath {

/// `a / b` rounded up, and 1 for a = 0: a size divided by a block size always gives at least one block.
template <class T>
GPURUNTIME_HOST_DEVICE T ceiledIntegerDivision(T a, T b) {
  return a == 0 ? 1 : (a - 1) / b + 1;
}

/// The smallest multiple of b that holds `a`, and b for a = 0.
template <class T>
GPURUNTIME_HOST_DEVICE T roundIntegerUpToMultipleOf(T a, T b) {
  return ceiledIntegerDivision(a, b) * b;
}

/// index / divisor from the reciprocal of the divisor, exact for an index below 2^32: half a unit keeps the product
/// further from the next integer than its two roundings reach.
GPURUNTIME_HOST_DEVICE unsigned long quotient(unsigned long index, double reciprocal) {
  return static_cast<unsigned long>((static_cast<double>(index) + 0.5) * reciprocal);
}

template <class T>
GPURUNTIME_HOST_DEVICE T minSizeT(T a, T b) {
  return a < b ? a : b;
}

/// True if bit i of x is set.
template <class T>
GPURUNTIME_HOST_DEVICE bool checkBit(T x, T i) {
  return ((T(1) << i) & x) != 0;
}

}  // namespace gpucommon::hostDeviceMath
