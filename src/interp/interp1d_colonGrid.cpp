#include <gpuruntime/interp/interp1d_colonGrid.hpp>

#include "interp/interp1dKernels.hpp"

namespace gpuruntime {

template <class GridT, class ValT, class ResT>
void Interp1d_ColonGrid::Invoker<GridT, ValT, ResT>::operator()(CUstream_st* stream, ResT* out, double2 grid,
                                                                const ValT* values, const GridT* queries,
                                                                unsigned long gridSize, unsigned long queryCount,
                                                                InterpType inRange, InterpType outOfRange,
                                                                ResT extrapolation) const {
  elementwise::launchWithDeviceFunctor<interp::Interp1DKernel_ColonGrid<ResT, GridT, ValT>>(
      stream, queryCount, out, grid, values, queries, gridSize, interp::Methods{inRange, outOfRange}, extrapolation);
}

GPURUNTIME_INSTANTIATE_1D(Interp1d_ColonGrid);

}  // namespace gpuruntime
