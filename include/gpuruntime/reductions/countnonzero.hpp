/// @file
/// Numbers of elements that are not 0.
///
/// The input's N elements are contiguous segments of L, of which the last may be shorter. Segment o begins at
/// `input[o * L]` and has its result in `output[o]`; L = N takes the whole array as one.
///
/// N = 0 does nothing. L is at least 1 otherwise, and the arrays must not overlap; neither is checked. Raises
/// MessageError if the limits of the device or of the kernel can't be read.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Counts the elements that are not 0; a complex element is 0 if both its parts are. -0 is 0, and NaN counts. The count
/// is exact up to 2^53.
class CountNonZero {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CountNonZero, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, double* output, const T* input, unsigned long N,
                                   unsigned long L) const;
  };
};

}  // namespace gpuruntime
