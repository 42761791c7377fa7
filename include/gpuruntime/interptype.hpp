/// @file
/// What all interpolation families share: the two methods, the bins of queries, and the value between two points.
///
/// **Grids.** A grid stands along each dimension: a vector of at least two finite, strictly increasing coordinates g[0]
/// to g[n - 1], or the *colon grid* 1, 2, ..., n, which needs no array. n is below 2^32. None of this is checked;
/// CheckInfNaNAndStrictlyIncreasing does so.
///
/// **Methods.** Every family takes two, one for queries within the grid and one for those outside of it:
///
///     InterpTypeLinear     within: between the points of its bin                outside: the first or last bin goes on
///     InterpTypeNearest    within: the nearer point, the upper of two as near   outside: the first or last value
///     InterpTypeConstant   within: no method   outside: the caller's extrapolation value, every bit of it
///
/// Others have no meaning and are not checked.
///
/// **Bins.** b is the bin of a query q if g[b] <= q < g[b + 1]. The last point belongs to the last bin, n - 2. A q
/// below the grid, above it (both also infinite) or NaN has BinBelowGrid, BinAboveGrid or BinNaNQuery. Where bins are
/// handed over they decide, whatever the query; any other number counts as BinNaNQuery.
///
/// **The linear value** between lo at g[b] and hi at g[b + 1]. With every operation rounded by itself, and b the bin,
/// 0 below the grid, or n - 2 above it:
///
///     t = (q - g[b]) * r, r = 1 / (g[b + 1] - g[b])   in the grid's type
///     t = q - (x + b)                                 in double on a colon grid, x the coordinate of its first point
///     u = 1 - t                                       in double
///     fma(lo, u, hi * t)                              values of double: in double, then rounded to the result's type
///     float(lo * u) + float(hi * t)                   values of float, t of double: products in double, sum in float
///     fma(hi, t, float(lo * u))                       values of float, t of float: product in double, fma in float
///
/// Complex values by parts. If the result, or a part of it, is NaN, it becomes hi where lo or a part of it is infinite,
/// and then lo where hi is. lo and hi are rounded to the result's type before that. So a query on a finite point beside
/// an infinite one gives the finite one, and between two infinities of opposite sign stands lo.
///
/// **The nearest value** is lo if g[b + 1] - q > q - g[b], otherwise hi; differences in the grid's type, in double on a
/// colon grid.
///
/// **NaN.** A NaN query gives the quiet NaN with the sign bit set, in both parts, whatever the methods. Payload and
/// sign of a NaN among the values, or out of arithmetic, are the machine's.
///
/// **Several dimensions.** Values are column-major, dimension 0 the fastest. Interpolation goes along dimension 0
/// first, on all 2^(N - 1) lines around the query, then along dimension 1 between neighbouring results, and so on.
/// Every step is the one above, with the same methods and extrapolation value. So the last dimension decides first: a
/// NaN query there gives NaN, and one outside with InterpTypeConstant gives the extrapolation value, whatever the other
/// queries are. A query outside in an earlier dimension makes that value a corner, which the later ones interpolate.
#pragma once

#include <gpuruntime/elementtypes.hpp>

namespace gpuruntime {

enum InterpType : int { InterpTypeLinear = 0, InterpTypeNearest = 1, InterpTypeConstant = 2 };

/// The bins of queries that are in none.
enum InterpBin : long long { BinBelowGrid = -1, BinAboveGrid = -10, BinNaNQuery = -20 };

namespace detail {

/// True if both are real or both complex, and the result is not the wider.
template <class Value, class Result>
inline constexpr bool isRoundedTo = IsMember<Value, ComplexTypes>::value == IsMember<Result, ComplexTypes>::value &&
                                    sizeof(Result) <= sizeof(Value);

}  // namespace detail
}  // namespace gpuruntime

/// Stands in the Invokers whose results are of the values' kind, and as wide or narrower.
#define GPURUNTIME_FAMILY_ROUNDS(Family, Value, Result)           \
  static_assert(::gpuruntime::detail::isRoundedTo<Value, Result>, \
                "gpuruntime::" #Family                            \
                " has no member for this result: "                \
                "it is of the values' kind, and as wide or narrower")
