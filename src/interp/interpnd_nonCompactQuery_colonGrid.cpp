#include <gpuruntime/interp/interp1d_colonGrid.hpp>
#include <gpuruntime/interp/interp2d_colonGrid.hpp>
#include <gpuruntime/interp/interp3d_colonGrid.hpp>
#include <gpuruntime/interp/interpnd_nonCompactQuery_colonGrid.hpp>

#include "interp/interpndKernels.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class GridT, class ValT>
void Interpnd_NonCompactQuery_ColonGrid::Invoker<GridT, ValT>::operator()(
    CUstream_st* stream, ValT* out, const ValT* values, std::vector<const GridT*> queries,
    const std::vector<unsigned long>& valueSizes, const unsigned long& queryCount, const ValT& extrapolation,
    const InterpType& inRange, const InterpType& outOfRange, const unsigned long& numDimensions) const {
  if (numDimensions >= 4) {
    const std::vector<double2> grids(numDimensions, interp::colonPair);
    interp::InterpndKernel_NonCompactQuery_Invoker<double2, GridT, ValT>(
        {stream, out, grids, values, queries, valueSizes, queryCount, extrapolation, {inRange, outOfRange}},
        numDimensions);
  } else if (numDimensions == 3) {
    typename Interp3d_NonCompactQuery_ColonGrid::Invoker<GridT, ValT>()(stream, out, values, queries[0], queries[1],
                                                                        queries[2], valueSizes, queryCount,
                                                                        extrapolation, inRange, outOfRange);
  } else if (numDimensions == 2) {
    typename Interp2d_NonCompactQuery_ColonGrid::Invoker<GridT, ValT>()(
        stream, out, values, queries[0], queries[1], valueSizes, queryCount, extrapolation, inRange, outOfRange);
  } else {
    typename Interp1d_ColonGrid::Invoker<GridT, ValT, ValT>()(stream, out, interp::colonPair, values, queries[0],
                                                              valueSizes[0], queryCount, inRange, outOfRange,
                                                              extrapolation);
  }
}

GPURUNTIME_INSTANTIATE_PAIRS(Interpnd_NonCompactQuery_ColonGrid, REAL_FLOAT_TYPES, FLOAT_TYPES);

}  // namespace gpuruntime
