/// @file
/// Cumulative sums along one dimension of an array, in place.
///
/// The N elements are folded into groups of L rows of S elements, and the rows are scanned: element (i, r, o),
/// 0 <= i < S, 0 <= r < L, stands at `data[i + r * S + o * S * L]`, and the total of its column at `totals[i + o * S]`.
/// S = 1 makes of each group a contiguous segment; the last may then be shorter than L, and there are ceil(N / L)
/// totals. For any other S there are N / (S * L) * S, and what is left behind the last whole group is not looked at.
///
/// **Order of columns** (S other than 1), with x the elements in front of the call and y those behind it: y(0) = x(0),
/// untouched, and `y(r) = y(r - 1) op x(r)`. The total is the last.
///
/// **Order of segments** (S = 1). A segment is scanned in tiles of 256 elements; I is the operator's identity, and x(j)
/// is element j of the tile, or I behind the segment's end. From the second tile on, x(0) is first replaced by
/// `carry op x(0)`, where carry is the total of the tile in front. Then
/// - sums of pairs upwards: u_0(j) = x(j), `u_k+1(j) = u_k(2j) op u_k(2j + 1)`, to the total u_8(0);
/// - what stands in front, downwards: p_8(0) = I, p_k(2j) = p_k+1(j), `p_k(2j + 1) = p_k+1(j) op u_k(2j)`;
/// - y(j) = p_0(j + 1), and the total for the last element of the tile.
///
/// So every element takes in I, on the left, or, as the last of a short tile, on the right; only the last of a whole
/// tile does not. A sum of -0 alone is +0 there, where a column keeps -0.
///
/// **Chunks.** A dimension of K * L elements may be folded into K chunks, which more blocks then scan at once:
///
///     CumSum(totals, data, N, L, S)              each chunk by itself
///     CumSum(others, totals, N / L, K, S)        the totals of the chunks in front, over the totals themselves
///     CumSumAdjust(totals, data, N, L, K, S)     joins them
///
/// N = 0 does nothing. L, S and K are at least 1, but for N = 0 and S = 1, where L may be 0; that is not checked, nor
/// that the arrays do not overlap, as they must not. Raises MessageError if the limits of the device or of the kernel
/// can't be read.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Running sums in the arithmetic of T: every floating sum is rounded, every integer sum is clamped to the range of T,
/// the parts of a complex element are summed apart, and a `bool` is true from the first true one on.
///
/// What was clamped on the way does not come back, so that the two orders may differ in integers, too. NaN spreads to
/// all sums that hold it; floating sums overflow to infinity. The totals are written in any case.
class CumSum {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CumSum, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* totals, T* data, unsigned long N, unsigned long L,
                                   unsigned long S) const;
  };
};

/// Joins chunks that CumSum has scanned each by itself: with c the number of a chunk among the K of its column, chunk 0
/// stays, and each element x of the others becomes `x + a` (S = 1) or `a + x` (any other S), where a is the adjustment
/// of the chunk in front: the running total of chunks 0 to c - 1, laid out like the totals of CumSum. The adjustments
/// are only read.
class CumSumAdjust {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CumSumAdjust, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* adjustments, T* data, unsigned long N, unsigned long L,
                                   unsigned long K, unsigned long S) const;
  };
};

}  // namespace gpuruntime
