/// @file
/// Complex arrays from real ones.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i] = (real[i], imag[i])`, 0 <= i < n.
///
/// Bits are moved: NaN payloads and signs of zeros stay. `out` must not overlap the inputs; that is not checked. n = 0
/// does nothing. Raises MessageError if the device can't be asked for its limits.
class ComplexifyPtrPtr {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ComplexifyPtrPtr, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ComplexOf<T>* out, const T* real, const T* imag,
                                   unsigned long n) const;
  };
};

/// `out[i] = (real[i], imag)`, 0 <= i < n, as ComplexifyPtrPtr.
class ComplexifyPtrScalar {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ComplexifyPtrScalar, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ComplexOf<T>* out, const T* real, T imag,
                                   unsigned long n) const;
  };
};

/// `out[i] = (real, imag[i])`, 0 <= i < n, as ComplexifyPtrPtr.
class ComplexifyScalarPtr {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ComplexifyScalarPtr, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ComplexOf<T>* out, T real, const T* imag,
                                   unsigned long n) const;
  };
};

}  // namespace gpuruntime
