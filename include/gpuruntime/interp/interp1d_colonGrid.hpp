/// @file
/// Interpolation along one colon grid, of queries in any order. The rules stand in interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

namespace gpuruntime {

/// `out[i]` = the value at `queries[i]` of one line of `gridSize` values on a colon grid, 0 <= i < queryCount.
///
/// `grid.x` is the coordinate of the first point in all arithmetic, but bins are always those of 1, 2, ..., gridSize:
/// 1 is the one that means something. `grid.y` is not looked at. queryCount is below 2^32, unchecked. No query does
/// nothing. Raises MessageError if the device can't be asked for its limits.
class Interp1d_ColonGrid {
 public:
  template <class GridT, class ValT, class ResT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interp1d_ColonGrid, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1d_ColonGrid, ValT, FloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1d_ColonGrid, ResT, FloatTypes);
    GPURUNTIME_FAMILY_ROUNDS(Interp1d_ColonGrid, ValT, ResT);
    GPURUNTIME_API void operator()(CUstream_st* stream, ResT* out, double2 grid, const ValT* values,
                                   const GridT* queries, unsigned long gridSize, unsigned long queryCount,
                                   InterpType inRange, InterpType outOfRange, ResT extrapolation) const;
  };
};

}  // namespace gpuruntime
