/// @file
/// One part of a complex array.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i] = in[i].x`, 0 <= i < n.
///
/// Bits are moved: NaN payloads and signs of zeros stay. The arrays must not overlap; that is not checked. n = 0 does
/// nothing. Raises MessageError if the device can't be asked for its limits.
class Real {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Real, T, ComplexTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, RealOf<T>* out, const T* in, unsigned long n) const;
  };
};

/// `out[i] = in[i].y`, 0 <= i < n, as Real.
class Imag {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Imag, T, ComplexTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, RealOf<T>* out, const T* in, unsigned long n) const;
  };
};

}  // namespace gpuruntime
