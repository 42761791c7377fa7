/// @file
/// Whether all elements along one dimension of an array are true.
///
/// The input's N elements are folded into groups of L rows of S elements, and the rows are reduced: element (i, r, o),
/// 0 <= i < S, 0 <= r < L, stands at `input[i + r * S + o * S * L]`, and its result at `output[i + o * S]`. S = 1 makes
/// of each group a contiguous segment; the last may then be shorter than L, and there are ceil(N / L) results. For any
/// other S there are N / (S * L) * S, and what is left behind the last whole group is not looked at.
///
/// N = 0 does nothing. L and S are at least 1, but for N = 0 and S = 1, where L may be 0; that is not checked, nor that
/// the arrays do not overlap, as they must not. Raises MessageError if the limits of the device or of the kernel can't
/// be read.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// True if no element is 0; a complex element is 0 if both its parts are. -0 is 0, and NaN is not: with NaN all other
/// elements decide.
class All {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(All, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, bool* output, const T* input, unsigned long N, unsigned long L,
                                   unsigned long S) const;
  };
};

}  // namespace gpuruntime
