/// @file
/// Products along one dimension of an array.
///
/// The input's N elements are folded into groups of L rows of S elements, and the rows are reduced: element (i, r, o),
/// 0 <= i < S, 0 <= r < L, stands at `input[i + r * S + o * S * L]`, and its result at `output[i + o * S]`. S = 1 makes
/// of each group a contiguous segment; the last may then be shorter than L, and there are ceil(N / L) results. For any
/// other S there are N / (S * L) * S, and what is left behind the last whole group is not looked at.
///
/// The order of the factors is that of the sums in sum.hpp; the identity is 1, or (1, 0).
///
/// N = 0 does nothing. L and S are at least 1, but for N = 0 and S = 1, where L may be 0; that is not checked, nor that
/// the arrays do not overlap, as they must not. Raises MessageError if the limits of the device or of the kernel can't
/// be read.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Multiplies in the arithmetic of T: every floating product is rounded, every product of integers up to 32 bits is
/// clamped to the range of T, 64-bit ones are taken modulo 2^64, and a `bool` result is true if all elements are.
///
/// Products of floating complex elements are those of `ctimes`: four products and two sums, each rounded, and a NaN
/// that comes of infinity times zero is recovered. In a segment of complex elements the factor (1, 0) stands too, so
/// that a result may have +0 for -0. Products of integer complex elements are taken modulo 2^width of a part. NaN
/// spreads to its product; floating products overflow to infinity.
class ProdNative {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ProdNative, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long N, unsigned long L,
                                   unsigned long S) const;
  };
};

/// Multiplies in `double`, or `double2` for complex T: each element, or part, is rounded to `double` first. Nothing is
/// clamped or taken modulo; a `bool` is 1 or 0. For `double` and `double2` the same as ProdNative.
class ProdAsDouble {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ProdAsDouble, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, DoubleOf<T>* output, const T* input, unsigned long N,
                                   unsigned long L, unsigned long S) const;
  };
};

}  // namespace gpuruntime
