/// @file
/// One dimension's grid vector out of a full array of coordinates.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i] = full[i * stride]`, 0 <= i < sizes[dimension]: the line of a column-major array along a dimension, counted
/// from 0, on which all other coordinates are 0. stride is the product of the sizes below that dimension, modulo 2^32.
///
/// Elements at i * stride >= count stay unwritten; count is the number of elements of the full array. The first five
/// sizes are copied to the device on the stream, so two calls on different streams must not run at the same time. If
/// they can't be copied, or are more than five, the call prints "Failed to copy to constant memory" and returns. A
/// size of 0 does nothing more. Raises MessageError if the device can't be asked for its limits.
class CopyToVector {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CopyToVector, T, RealFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* out, const T* full, unsigned long dimension,
                                   unsigned long const* sizes, unsigned long numDimensions, unsigned long count) const;
  };
};

}  // namespace gpuruntime
