/// @file
/// Conjugates.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i] = (in[i].x, -in[i].y)`, 0 <= i < n: the sign bit of the imaginary part flips, that of a zero and of a NaN
/// too, and nothing else changes.
///
/// `out` may be `in`; arrays that overlap otherwise are not allowed, which is not checked. n = 0 does nothing.
/// Raises MessageError if the device can't be asked for its limits.
class Conj {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Conj, T, ComplexFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* out, const T* in, unsigned long n) const;
  };
};

}  // namespace gpuruntime
