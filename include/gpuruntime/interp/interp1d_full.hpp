/// @file
/// Interpolation along one full grid, of queries in any order. The rules stand in interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

namespace gpuruntime {

/// `out[i]` = the value at `queries[i]` of one line of `gridSize` values, 0 <= i < queryCount, with its bin in the
/// grid.
///
/// The order of the queries changes no result; sorted ones, and evenly spaced grid points, are faster. queryCount is
/// below 2^32, unchecked. No query writes nothing. Raises MessageError if the device can't be asked for its limits.
class Interp1dFull {
 public:
  template <class GridT, class ValT, class ResT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interp1dFull, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1dFull, ValT, FloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1dFull, ResT, FloatTypes);
    GPURUNTIME_FAMILY_ROUNDS(Interp1dFull, ValT, ResT);
    GPURUNTIME_API void operator()(CUstream_st* stream, ResT* out, const GridT* grid, const ValT* values,
                                   const GridT* queries, unsigned long gridSize, unsigned long queryCount,
                                   InterpType inRange, InterpType outOfRange, ResT extrapolation) const;
  };
};

}  // namespace gpuruntime
