/// @file
/// Sums along one dimension of an array.
///
/// The input's N elements are folded into groups of L rows of S elements, and the rows are reduced: element (i, r, o),
/// 0 <= i < S, 0 <= r < L, stands at `input[i + r * S + o * S * L]`, and its result at `output[i + o * S]`. S = 1 makes
/// of each group a contiguous segment; the last may then be shorter than L, and there are ceil(N / L) results. For any
/// other S there are N / (S * L) * S, and what is left behind the last whole group is not looked at.
///
/// **Order.** With x(r) element r of a segment (S = 1) and n their number, lane t of 256 is
/// `x(t) op x(t + 256) op x(t + 512) op ...` from left to right, or the identity of the operator if t >= n. Then lane t
/// becomes `lane t op lane t + h` for t < h, for h = 128, 64, 32, 16, 8, 4, 2, 1 in turn, and lane 0 is the result. So
/// an identity stands in every sum of a segment, and one of -0 alone is +0. For any other S the result of a column is
/// `x(0) op x(1) op x(2) op ...` from left to right, without an identity.
///
/// N = 0 does nothing. L and S are at least 1, but for N = 0 and S = 1, where L may be 0; that is not checked, nor that
/// the arrays do not overlap, as they must not. Raises MessageError if the limits of the device or of the kernel can't
/// be read.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Sums in the arithmetic of T: every floating sum is rounded, every integer sum is clamped to the range of T, the
/// parts of a complex element are summed apart, and a `bool` result is true if some element is.
///
/// A sum that was clamped on the way does not come back: of `signed char` 127, 1, -1 the sum is 126 by columns, and 127
/// as a segment, where lanes 0 and 2 meet first. NaN spreads to its sum; floating sums overflow to infinity.
class SumNative {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SumNative, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long N, unsigned long L,
                                   unsigned long S) const;
  };
};

/// Sums in `double`, or `double2` for complex T: each element, or part, is rounded to `double` and then summed. Nothing
/// is clamped, and a `bool` counts 1 if true. For `double` and `double2` the same as SumNative.
class SumAsDouble {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SumAsDouble, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, DoubleOf<T>* output, const T* input, unsigned long N,
                                   unsigned long L, unsigned long S) const;
  };
};

}  // namespace gpuruntime
