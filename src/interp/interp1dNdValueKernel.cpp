#include <gpuruntime/interp/interp1dNdValueKernel.hpp>
#include <gpuruntime/launcher/fixed2dblock.hpp>

#include "interp/interp1dKernels.hpp"

namespace gpuruntime {
namespace interp {
namespace {

constexpr unsigned int queriesPerBlock = 64, columnsAtOnce = 4;
constexpr unsigned int columnsPerThread = 10;

constexpr unsigned int blockSize = queriesPerBlock * columnsAtOnce;

// The shape is left to the launch: loops for whole blocks alone would gain little.
template <class ResT, class GridArg, class GridT, class ValT>
struct Interp1DKernel_NdValue : BlockFunctor<0> {
  static GPURUNTIME_DEVICE void apply(const platform::Block<>& block, const cuda::Fixed2DBlockIterator& it, ResT* out,
                                      GridArg grid, const ValT* values, const GridT* queries, const long long* bins,
                                      unsigned long queryCount, unsigned long n, unsigned long columns,
                                      unsigned long columnsOfThread, Methods methods, ResT extrapolation) {
    using C = CoordinateOf<GridArg>;
    const unsigned long firstQuery = it.blockX * queriesPerBlock;
    const unsigned long firstColumn = it.blockY * columnsOfThread * columnsAtOnce;
    const unsigned long liveX = Live::after(firstQuery, queryCount);

    // A query's place is the same in all columns.
    PerThread<unsigned long, blockSize> bin;
    PerThread<C, blockSize> t;
    PerThread<long long, blockSize> choice;
    block.forEachThread(Live{liveX}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= liveX)) return;
      const unsigned long query = firstQuery + thread.x;
      const Place<C> place = placeQuery(grid, queries[query], bins[query], n, methods);
      bin[thread] = place.bin;
      t[thread] = place.t;
      choice[thread] = place.choice;
    });
    for (unsigned long k = 0; k < columnsOfThread; ++k) {
      const unsigned long column = firstColumn + k * columnsAtOnce, liveY = Live::after(column, columns);
      block.forEachThread(Live{liveX, liveY}, [&](Thread thread) {
        if (platform::isIdle(thread.x >= liveX || thread.y >= liveY)) return;
        const Place<C> place{bin[thread], t[thread], choice[thread]};
        const unsigned long own = column + thread.y;
        out[own * queryCount + firstQuery + thread.x] = interpolate<ResT>(place, values + own * n, extrapolation);
      });
    }
  }
};

template <class ResT, class GridArg, class GridT, class ValT>
void interpolateColumns(CUstream_st* stream, ResT* out, GridArg grid, const ValT* values, const GridT* queries,
                        const long long* bins, unsigned long queryCount, unsigned long gridSize,
                        unsigned long valueCount, Methods methods, ResT extrapolation) {
  const unsigned long columns = valueCount / gridSize, perThread = columnsPerThread;
  fixed2dblock::launchWithDeviceFunctor<Interp1DKernel_NdValue<ResT, GridArg, GridT, ValT>>(
      stream, queryCount, gpucommon::hostDeviceMath::ceiledIntegerDivision(columns, perThread), queriesPerBlock,
      columnsAtOnce, out, grid, values, queries, bins, queryCount, gridSize, columns, perThread, methods,
      extrapolation);
}

}  // namespace
}  // namespace interp

template <class GridT, class ValT, class ResT>
void Interp1dNdValFull::Invoker<GridT, ValT, ResT>::operator()(
    CUstream_st* stream, ResT* out, const GridT* grid, const ValT* values, const GridT* queries, const long long* bins,
    const unsigned long& queryCount, const unsigned long& gridSize, const unsigned long& valueCount,
    const InterpType& inRange, const InterpType& outOfRange, const ResT& extrapolation) const {
  interp::interpolateColumns(stream, out, grid, values, queries, bins, queryCount, gridSize, valueCount,
                             interp::Methods{inRange, outOfRange}, extrapolation);
}

template <class GridT, class ValT, class ResT>
void Interp1dNdVal_ColonGrid::Invoker<GridT, ValT, ResT>::operator()(
    CUstream_st* stream, ResT* out, double2 grid, const ValT* values, const GridT* queries, const long long* bins,
    const unsigned long& queryCount, const unsigned long& gridSize, const unsigned long& valueCount,
    const InterpType& inRange, const InterpType& outOfRange, const ResT& extrapolation) const {
  interp::interpolateColumns(stream, out, grid, values, queries, bins, queryCount, gridSize, valueCount,
                             interp::Methods{inRange, outOfRange}, extrapolation);
}

GPURUNTIME_INSTANTIATE_1D(Interp1dNdValFull);
GPURUNTIME_INSTANTIATE_1D(Interp1dNdVal_ColonGrid);

}  // namespace gpuruntime
