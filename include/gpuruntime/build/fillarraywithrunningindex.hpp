/// @file
/// Repeated indices.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i] = i mod (runLength * numRuns) / runLength + 1`, 0 <= i < n, in unsigned 64-bit integer arithmetic: the
/// 1-based index 1, ..., 1, 2, ..., 2, ..., numRuns, with every value `runLength` times, again and again.
///
/// The value is rounded to nearest for double and cut to its low 32 bits for int. `runLength * numRuns` is below 2^64,
/// both are at least 1; that is not checked. n = 0 does nothing. Raises MessageError if the device can't be asked for
/// its limits.
class FillArrayWithRunningIndex {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(FillArrayWithRunningIndex, T, DoubleAndIntTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, unsigned long runLength,
                                   unsigned long numRuns) const;
  };
};

}  // namespace gpuruntime
