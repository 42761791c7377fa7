/// @file
/// Questions about each element of an array, answered by `bool`.
///
/// All run over 0 <= i < n. The arrays must not overlap; that is not checked. n = 0 does nothing. All raise
/// MessageError if the device can't be asked for its limits.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `output[i]` is true if `input[i]` is not 0: of a complex element, if a part is not. -0 is 0, and NaN is not.
class IsNonZero {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsNonZero, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const;
  };
};

/// `output[i]` is true if `input[i]` is neither 0 nor NaN. A complex element is 0 if both parts are, and NaN if one is.
class IsNeitherZeroNorNaN {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsNeitherZeroNorNaN, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const;
  };
};

/// `output[i]` is true if `input[i]`, or a part of it, is NaN.
class IsNaN {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsNaN, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const;
  };
};

/// `output[i]` is true if `input[i]`, or a part of it, is infinite.
class IsInf {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsInf, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const;
  };
};

/// `output[i]` is true if `input[i]`, or a part of it, is NaN or infinite.
class IsNaNOrInf {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsNaNOrInf, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const;
  };
};

}  // namespace gpuruntime
