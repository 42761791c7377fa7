/// @file
/// Whether arrays hold NaN or infinities.
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

/// True if some element, or a part of it, is NaN or infinite.
class HasNaNOrInf {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(HasNaNOrInf, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long N,
                                   unsigned long L) const;
  };
};

}  // namespace gpuruntime
