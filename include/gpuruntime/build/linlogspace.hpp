/// @file
/// Evenly spaced values, and powers of ten of them.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i]`, 0 <= i < n, runs from `start` to `stop` in n evenly spaced values; `out[n - 1]` is `stop` itself, so n = 1
/// gives `stop`.
///
/// With d = stop - start and m = n - 1, every operation rounded by itself and only a written fma fused, the others are
///
///     double:  ((i * d) / m) + start                        d finite or NaN
///              fma(stop / m, i, start) - (start / m) * i    d infinite
///     float:   float((double(d) * i) / m) + start           d, in float, finite or NaN
///              (float((double(stop) / m) * i) + start) - float((double(start) / m) * i)
///
/// with i and m in double, and the last sums of float in float. `i * d` may overflow where d does not; the value is
/// then infinite. A complex T takes the rule for each part by itself. A NaN end makes every value NaN but the last,
/// which is `stop`. n = 0 does nothing. Raises MessageError if the device can't be asked for its limits.
class Linspace {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Linspace, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, T start, T stop) const;
  };
};

/// `out[i] = 10^e`, with e the i-th value of Linspace, the last one `stop`.
///
/// Real T: for an integer e repeated squaring of 10 in T, each product rounded by itself, and the correctly rounded
/// reciprocal of it for e < 0; otherwise 10^e within 1 unit in the last place, the same bits everywhere. Complex T:
/// the complex power of (10, 0) to e: by repeated multiplication where e is a real integer, by the rule for real T
/// where e is another real number, and by exp(log(10) * e) where it is not real. n = 0 does nothing. Raises
/// MessageError if the device can't be asked for its limits.
class Logspace {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Logspace, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, T start, T stop) const;
  };
};

}  // namespace gpuruntime
