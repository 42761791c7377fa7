/// @file
/// Arithmetic progressions.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i]`, 0 <= i < n, runs from `start` to `stop` in steps of `step`, each half computed from the end nearer to it.
///
/// With h = (n - 1) / 2 in integer division, in double and with every operation rounded by itself:
///
///     out[i] = start + i * step              i <= h
///     out[i] = stop - (n - 1 - i) * step     i >  h
///
/// and for odd n the middle element does not depend on `step`: out[h] = fma(stop - start, 0.5, start) where both ends
/// are >= 0 or both are <= 0, and (start + stop) * 0.5 otherwise, also where an end is NaN.
/// So for n >= 2 and a finite `step` both ends come out exact in double, -0 as +0 apart, and for n = 1 the element is
/// the middle of `start` and `stop`.
///
/// The value becomes a T at the store: rounded to nearest for float; for integers truncated towards zero to the 32-bit
/// (8- to 32-bit T) or 64-bit integer of T's signedness, of which T keeps the low bits. Values beyond that integer take
/// its nearest end, and NaN becomes 0; the caller is expected to give values that fit.
///
/// n = 0 does nothing. `n` is consistent with the three values by the caller's word, which is not checked.
/// Raises MessageError if the device can't be asked for its limits.
class Colon {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Colon, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, double start, double step,
                                   double stop) const;
  };
};

/// `out[i] = fma(i, step, start)`, 0 <= i < n, in double with one rounding, then converted to T as Colon does.
///
/// The short form for progressions of integers. n = 0 does nothing; nothing is checked.
/// Raises MessageError if the device can't be asked for its limits.
class IntColon {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IntColon, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, double start, double step) const;
  };
};

}  // namespace gpuruntime
