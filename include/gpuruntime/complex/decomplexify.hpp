/// @file
/// Real arrays from a complex one.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `real[i] = in[i].x` and `imag[i] = in[i].y`, 0 <= i < n.
///
/// Bits are moved: NaN payloads and signs of zeros stay. The arrays must not overlap; that is not checked. n = 0 does
/// nothing. Raises MessageError if the device can't be asked for its limits.
class Decomplexify {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Decomplexify, T, ComplexTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, RealOf<T>* real, RealOf<T>* imag, const T* in,
                                   unsigned long n) const;
  };
};

}  // namespace gpuruntime
