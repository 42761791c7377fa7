/// @file
/// Recursive filters along the columns of an array.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

// Orders stand in the names of members: hidden, they would hide the members with them.
#pragma GCC visibility push(default)
#include <boost/mpl/integral_c.hpp>
#pragma GCC visibility pop

namespace gpuruntime {

/// The numbers of delay states.
using FilterOrders =
    TypeList<mpl_::integral_c<int, 1>, mpl_::integral_c<int, 2>, mpl_::integral_c<int, 3>, mpl_::integral_c<int, 4>,
             mpl_::integral_c<int, 5>, mpl_::integral_c<int, 6>, mpl_::integral_c<int, 7>, mpl_::integral_c<int, 8>,
             mpl_::integral_c<int, 9>, mpl_::integral_c<int, 10>>;

/// Filters each column of x by b and a, with N delay states, in direct form II transposed. N + 1 is the largest number
/// of coefficients; those beyond are ignored, and missing ones are 0.
///
/// Sample t of column c of page p stands at `p * columns * length + c * length + t` for stride = 1: columns one after
/// the other; and for any other stride at `p * columns * length + c + t * stride`: interleaved columns. y is laid out
/// like x, and may be x itself.
///
/// Coefficients are divided by a[0] first: with inv = 1 / a[0], rounded, B(i) = b[i] * inv and A(i) = a[i] * inv. Then,
/// for each column, with z(0) to z(N - 1) its initial states, or zeros if `zi` is null,
///
///     for t = 0 to length - 1:
///       y(t) = fma(B(0), x(t), z(0))
///       z(j) = fma(B(j + 1), x(t), z(j + 1) + 0) - A(j + 1) * y(t)      j = 0 to N - 1 in order, z(N) = +0
///
/// where the last product is rounded by itself. The sum with 0 takes -0 for +0. The last states go to `zf`, unless that
/// is null; with length = 0, the initial ones. The states of a column are N elements side by side in `zi` and `zf`,
/// those of column c of page p at `(p * columns + c) * N`; with `sharedInitial` other than 0, `zi` holds one state for
/// all columns. So filtering in pieces, with the `zf` of one call as the `zi` of the next, is filtering at once, to the
/// bit.
///
/// Complex: products are (p.x * q.x - p.y * q.y, fma(p.x, q.y, p.y * q.x)) with the coefficient as p, b[i] and a[i] as
/// p of b[i] * inv; sums are by parts, and nothing else is fused. 1 / a[0] is taken by r = 1 / (|a.x| + |a.y|), (ux,
/// uy) = (r, 0 * r), v = a[0] * r by parts, q = 1 / (v.x * v.x + v.y * v.y), as ((ux * v.x + uy * v.y) * q, (uy * v.x -
/// ux * v.y) * q).
///
/// NaN and infinities spread along their column; a[0] = 0 makes them. No columns or no pages make no call. Not checked:
/// that all positions are below 2^32, that `b` and `a` hold nb and na entries, a at least one, and that arrays do not
/// overlap but for y and x, and for `zf` and a `zi` of all columns, which may be the same. Raises MessageError if the
/// device can't be asked for its limits.
class IIRFilter {
 public:
  template <class T, class N>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IIRFilter, T, FloatTypes);
    GPURUNTIME_FAMILY_TAKES(IIRFilter, N, FilterOrders);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* y, T* zf, const T* b, const T* a, const T* x, const T* zi,
                                   unsigned int nb, unsigned int na, unsigned int length, unsigned int columns,
                                   unsigned int stride, unsigned int pages, unsigned int sharedInitial) const;
  };
};

}  // namespace gpuruntime
