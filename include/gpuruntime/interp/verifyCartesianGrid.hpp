/// @file
/// Whether a full array of coordinates is a grid vector, spread along one dimension.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// True if every element of a column-major array equals `grid[c]`, c its coordinate along `dimension`, counted from 0.
/// NaN equals nothing, and -0 equals 0. An array without elements is true.
///
/// The answer stands when the call returns: it waits by a blocking copy on the default stream, so the caller's stream
/// must be one that synchronises with it. All calls share one word on the device, and so must not run at the same time
/// on any streams. If that word, or the sizes of one, four and five dimensions, can't be copied, the answer is false;
/// so it is for more than five. An array of those has fewer than 2^32 elements, unchecked. Raises MessageError if the
/// device can't be asked for its limits.
class VerifyNDCartesianGrid {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(VerifyNDCartesianGrid, T, RealFloatTypes);
    GPURUNTIME_API bool operator()(CUstream_st* stream, const T* full, const T* grid, unsigned long dimension,
                                   unsigned long const* sizes, unsigned long numDimensions) const;
  };
};

}  // namespace gpuruntime
