/// @file
/// Magnitudes and their powers.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `output[i] = |input[i]|`, 0 <= i < n.
///
/// Real: the sign bit is cleared, also of -0 and NaN. Complex: sqrt(x^2 + y^2) without overflow on the way, within 2
/// units in the last place; +Inf if a part is infinite, also beside a NaN, else NaN if a part
/// is NaN.
///
/// The arrays must not overlap, apart from a real output that is the input; that is not checked. n = 0 does nothing.
/// Raises MessageError if the device can't be asked for its limits.
class Abs {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Abs, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, RealOf<T>* output, const T* input, unsigned long n) const;
  };
};

/// `output[i] = |input[i]|^p`, 0 <= i < n, with the magnitude a of Abs. In the real type of T, to which p is rounded
/// first.
///
/// If a and p are integers, or infinite: repeated squaring from the lowest bit of p, which is cut to an `int`, each
/// product rounded, and the reciprocal for p < 0. Otherwise a^p within 1 unit in the last place, the same bits
/// everywhere; for p = 2 that is a * a, rounded once. a^0 is 1 for every a, NaN too; 0 to a negative power is Inf.
///
/// The arrays must not overlap, apart from a real output that is the input; that is not checked. n = 0 does nothing.
/// Raises MessageError if the device can't be asked for its limits.
class AbsPower {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(AbsPower, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, RealOf<T>* output, const T* input, double p,
                                   unsigned long n) const;
  };
};

}  // namespace gpuruntime
