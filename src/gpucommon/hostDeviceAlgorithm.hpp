/// @file
/// Algorithms on ranges, for host and device.
#pragma once

#include "platform/platform.hpp"

namespace gpucommon::algorithm {

/// Copies [first, last) to `out`, element by element and in order; returns the end of the output.
template <class InputIterator, class OutputIterator>
GPURUNTIME_HOST_DEVICE OutputIterator copy(InputIterator first, InputIterator last, OutputIterator out) {
  for (; first != last; ++first, ++out) *out = *first;
  return out;
}

}  // namespace gpucommon::algorithm
