#include <gpuruntime/interp/interp1d_full.hpp>

#include "interp/interp1dKernels.hpp"

namespace gpuruntime {

template <class GridT, class ValT, class ResT>
void Interp1dFull::Invoker<GridT, ValT, ResT>::operator()(CUstream_st* stream, ResT* out, const GridT* grid,
                                                          const ValT* values, const GridT* queries,
                                                          unsigned long gridSize, unsigned long queryCount,
                                                          InterpType inRange, InterpType outOfRange,
                                                          ResT extrapolation) const {
  using Tile = interp::Tile1D<ResT, GridT>;
  const unsigned long threads =
      gpucommon::hostDeviceMath::ceiledIntegerDivision<unsigned long>(queryCount, Tile::queries);
  fixed1dblock::launchWithDeviceFunctor<interp::Interp1DKernel<ResT, GridT, ValT>>(
      stream, threads, Tile::threads, out, grid, values, queries, gridSize, queryCount,
      interp::Methods{inRange, outOfRange}, extrapolation);
}

GPURUNTIME_INSTANTIATE_1D(Interp1dFull);

}  // namespace gpuruntime
