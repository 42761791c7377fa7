/// @file
/// Questions about a whole array, answered by one `bool`.
///
/// The answer stands when the call returns: a check waits for its kernel by a blocking copy on the default stream, so
/// the caller's stream must be one that synchronises with it. All checks share one word on the device, and so must not
/// run at the same time on any streams. n = 0 gives false with nothing launched.
///
/// A check that can't set or read that word answers true: the caller then takes the careful way. All raise MessageError
/// if the device can't be asked for its limits.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Some element, or a part of it, is NaN.
class CheckNaN {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CheckNaN, T, FloatTypes);
    GPURUNTIME_API bool operator()(CUstream_st* stream, const T* data, const unsigned long& n) const;
  };
};

/// Some element, or a part of it, is infinite.
class CheckInf {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CheckInf, T, FloatTypes);
    GPURUNTIME_API bool operator()(CUstream_st* stream, const T* data, const unsigned long& n) const;
  };
};

/// Some element, or a part of it, is NaN or infinite.
class CheckNotFinite {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CheckNotFinite, T, FloatTypes);
    GPURUNTIME_API bool operator()(CUstream_st* stream, const T* data, const unsigned long& n) const;
  };
};

/// `data[i] >= data[i + 1]` for some 0 <= i < n - 1. A NaN compares false, so it is not found by this.
class CheckNotStronglySortedAscending {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CheckNotStronglySortedAscending, T, RealFloatTypes);
    GPURUNTIME_API bool operator()(CUstream_st* stream, const T* data, const unsigned long& n) const;
  };
};

}  // namespace gpuruntime
