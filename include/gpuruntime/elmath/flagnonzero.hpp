/// @file
/// Flags of elements as the numbers 1 and 0, ready to be summed.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `output[i]` = 1.0 if `input[i]` is not 0, else 0.0, 0 <= i < n. A complex element is 0 if both parts are; -0 is 0,
/// NaN is not, and a `bool` is 0 if its byte is.
///
/// The arrays must not overlap; that is not checked. n = 0 does nothing. Raises MessageError if the device can't be
/// asked for its limits.
class FlagNonZero {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(FlagNonZero, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, double* output, const T* input, unsigned long n) const;
  };
};

/// `output[i]` = 1.0 if `input[i] < 0`, else 0.0, 0 <= i < n. -0 and NaN are not below 0, nor is any unsigned element.
///
/// The arrays must not overlap; that is not checked. n = 0 does nothing. Raises MessageError if the device can't be
/// asked for its limits.
class FlagNegative {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(FlagNegative, T, RealTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, double* output, const T* input, unsigned long n) const;
  };
};

}  // namespace gpuruntime
