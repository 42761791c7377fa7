#include <gpuruntime/interp/interp1d_full.hpp>
#include <gpuruntime/interp/interp2d_full.hpp>
#include <gpuruntime/interp/interp3d_full.hpp>
#include <gpuruntime/interp/interpnd_compactQuery_fullGrid.hpp>

#include "interp/interpndKernels.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class GridT, class ValT>
void Interpnd_CompactQuery::Invoker<GridT, ValT>::operator()(
    CUstream_st* stream, ValT* out, std::vector<const GridT*> grids, const ValT* values,
    std::vector<const GridT*> queries, const long long* bins, const std::vector<unsigned long>& querySizes,
    const std::vector<unsigned long>& valueSizes, const ValT& extrapolation, const InterpType& inRange,
    const InterpType& outOfRange, const unsigned long& numDimensions) const {
  unsigned long total = 1;
  for (const unsigned long size : querySizes) total *= size;
  if (numDimensions >= 4) {
    interp::InterpndKernel_CompactQuery_Invoker<const GridT*, GridT, ValT>(
        {stream, out, grids, values, queries, bins, querySizes, valueSizes, extrapolation, {inRange, outOfRange}},
        total, numDimensions);
  } else if (numDimensions == 3) {
    typename Interp3d_CompactQuery::Invoker<GridT, ValT>()(stream, out, grids[0], grids[1], grids[2], values,
                                                           queries[0], queries[1], queries[2], bins, querySizes,
                                                           valueSizes, extrapolation, inRange, outOfRange);
  } else if (numDimensions == 2) {
    typename Interp2d_CompactQuery::Invoker<GridT, ValT>()(stream, out, grids[0], grids[1], values, queries[0],
                                                           queries[1], bins, querySizes, valueSizes, extrapolation,
                                                           inRange, outOfRange);
  } else {
    typename Interp1dFull::Invoker<GridT, ValT, ValT>()(stream, out, grids[0], values, queries[0], valueSizes[0], total,
                                                        inRange, outOfRange, extrapolation);
  }
}

GPURUNTIME_INSTANTIATE_PAIRS(Interpnd_CompactQuery, REAL_FLOAT_TYPES, FLOAT_TYPES);

}  // namespace gpuruntime
