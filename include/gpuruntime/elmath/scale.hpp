/// @file
/// Division of an array by a scalar, in place.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `data[i] = data[i] / s`, 0 <= i < n: one rounded division, or the scaled complex division with fused denominator.
///
/// By 0: Inf, and NaN for 0 and NaN. A complex s of imaginary part 0 divides the parts; of data[i], a zero imaginary
/// part then becomes +0, or else a zero real part.
///
/// n is at most 2^32 - 65536; that is not checked. n = 0 does nothing. Raises MessageError if the device can't be
/// asked for its limits.
class ScaleInplace {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ScaleInplace, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* data, T s, unsigned long n) const;
  };
};

/// `data[i] = data[i] / s`, 0 <= i < n, divided in double; for the single types the quotient is then rounded to float.
/// The parts of a complex element are divided by themselves.
///
/// n is at most 2^32 - 65536; that is not checked. n = 0 does nothing. Raises MessageError if the device can't be
/// asked for its limits.
class ScaleByDoubleInplace {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ScaleByDoubleInplace, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* data, double s, unsigned long n) const;
  };
};

}  // namespace gpuruntime
