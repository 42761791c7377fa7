/// @file
/// Interpolation on full grids of three dimensions. The rules stand in interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

#include <vector>

namespace gpuruntime {

/// Queries that span a mesh: `out[x + m0 * (y + m1 * z)]` = the value at (queries0[x], queries1[y], queries2[z]), for a
/// mesh of m0 x m1 x m2 queries, `querySizes`, and an array of `valueSizes` values.
///
/// `bins` are those that IndexSearch gives for each dimension: those of dimension 0 first, each dimension's behind the
/// one before, whose stretch is rounded up to a multiple of 16 (16 for none). The array has fewer than 2^32 elements,
/// unchecked. A mesh without points does nothing. Raises MessageError if the device can't be asked for its limits.
///
/// The value sizes are copied to the device on the stream, so two calls on different streams must not run at the same
/// time. If they can't be copied the call prints "Interp3d compact query kernel failed to copy valueSz to constant
/// memory" and returns.
class Interp3d_CompactQuery {
 public:
  template <class GridT, class ValT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interp3d_CompactQuery, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp3d_CompactQuery, ValT, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ValT* out, const GridT* grid0, const GridT* grid1,
                                   const GridT* grid2, const ValT* values, const GridT* queries0, const GridT* queries1,
                                   const GridT* queries2, const long long* bins,
                                   const std::vector<unsigned long>& querySizes,
                                   const std::vector<unsigned long>& valueSizes, const ValT& extrapolation,
                                   const InterpType& inRange, const InterpType& outOfRange) const;
  };
};

/// Queries of one common length: `out[i]` = the value at (queries0[i], queries1[i], queries2[i]), 0 <= i < queryCount,
/// with bins found on the way.
///
/// The order of the queries changes no result; neighbours that are close are faster. queryCount is below 2^32,
/// unchecked. The array has fewer than 2^32 elements, unchecked. No query writes nothing. Raises MessageError if the
/// device can't be asked for its limits.
///
/// The value sizes are copied to the device on the stream, so two calls on different streams must not run at the same
/// time. If they can't be copied the call prints "Interp3d Noncompact query kernel failed to copy valueSz to constant
/// memory" and returns.
class Interp3d_NonCompactQuery {
 public:
  template <class GridT, class ValT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interp3d_NonCompactQuery, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp3d_NonCompactQuery, ValT, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ValT* out, const GridT* grid0, const GridT* grid1,
                                   const GridT* grid2, const ValT* values, const GridT* queries0, const GridT* queries1,
                                   const GridT* queries2, const std::vector<unsigned long>& valueSizes,
                                   const unsigned long& queryCount, const ValT& extrapolation,
                                   const InterpType& inRange, const InterpType& outOfRange) const;
  };
};

}  // namespace gpuruntime
