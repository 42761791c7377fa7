/// @file
/// Whether a vector can be a grid.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

#include <utility>

namespace gpuruntime {

/// {some element is NaN or infinite, data[i] >= data[i + 1] for some 0 <= i < n - 1}. A NaN compares false, so it is
/// not found by the second. Both are false of a grid, which has two points at least.
///
/// The answer stands when the call returns: it waits by a blocking copy on the default stream, so the caller's stream
/// must be one that synchronises with it. All calls share one word on the device, and so must not run at the same time
/// on any streams. If that word can't be set or read both are true. n = 0 launches nothing and gives false for both.
/// Raises MessageError if the device can't be asked for its limits.
class CheckInfNaNAndStrictlyIncreasing {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CheckInfNaNAndStrictlyIncreasing, T, RealFloatTypes);
    GPURUNTIME_API std::pair<bool, bool> operator()(CUstream_st* stream, const T* data, const unsigned long& n) const;
  };
};

}  // namespace gpuruntime
