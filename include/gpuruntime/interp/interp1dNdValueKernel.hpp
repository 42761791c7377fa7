/// @file
/// Interpolation of many columns of values along one grid, with the bins of the queries given. The rules stand in
/// interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

namespace gpuruntime {

/// `out[c * queryCount + i]` = the value at `queries[i]`, whose bin is `bins[i]`, of the line of gridSize values that
/// begins at `values[c * gridSize]`: 0 <= i < queryCount, 0 <= c < valueCount / gridSize, rounded down. `bins` are
/// those that IndexSearch gives.
///
/// gridSize is at least 2, unchecked. Without queries or columns nothing is written. Raises MessageError if the
/// device's limits can't be read.
class Interp1dNdValFull {
 public:
  template <class GridT, class ValT, class ResT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interp1dNdValFull, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1dNdValFull, ValT, FloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1dNdValFull, ResT, FloatTypes);
    GPURUNTIME_FAMILY_ROUNDS(Interp1dNdValFull, ValT, ResT);
    GPURUNTIME_API void operator()(CUstream_st* stream, ResT* out, const GridT* grid, const ValT* values,
                                   const GridT* queries, const long long* bins, const unsigned long& queryCount,
                                   const unsigned long& gridSize, const unsigned long& valueCount,
                                   const InterpType& inRange, const InterpType& outOfRange,
                                   const ResT& extrapolation) const;
  };
};

/// The same on a colon grid, with bins that IndexSearch_ColonGrid gives. `grid` is as in Interp1d_ColonGrid.
class Interp1dNdVal_ColonGrid {
 public:
  template <class GridT, class ValT, class ResT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interp1dNdVal_ColonGrid, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1dNdVal_ColonGrid, ValT, FloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interp1dNdVal_ColonGrid, ResT, FloatTypes);
    GPURUNTIME_FAMILY_ROUNDS(Interp1dNdVal_ColonGrid, ValT, ResT);
    GPURUNTIME_API void operator()(CUstream_st* stream, ResT* out, double2 grid, const ValT* values,
                                   const GridT* queries, const long long* bins, const unsigned long& queryCount,
                                   const unsigned long& gridSize, const unsigned long& valueCount,
                                   const InterpType& inRange, const InterpType& outOfRange,
                                   const ResT& extrapolation) const;
  };
};

}  // namespace gpuruntime
