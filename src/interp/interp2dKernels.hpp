/// @file
/// The kernels of two dimensions, and their launch.
#pragma once

#include <gpuruntime/launcher/elementwise2d.hpp>

#include <vector>

#include "interp/meshKernels.hpp"
#include "interp/scatteredKernels.hpp"

namespace gpuruntime::interp {

template <class V, class GridArg, class T>
struct Interp2DKernel_CompactQuery : elementwise::RunsWholeBlocks {
  static constexpr unsigned int joinedBlocks = joinedMeshBlocks;
  using Queries = Mesh<2, GridArg, T, V>;

  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, V* out, Queries mesh, Sizes<2> sizes) {
    if (it.isOutside()) return;
    out[it.x + it.sizeX * it.y] = mesh.valueAt({{it.x, it.y}}, sizes, sizes.strides());
  }
  template <class Block>
  static GPURUNTIME_DEVICE void applyToBlock(const Block& block, launchdetail::Distances first,
                                             launchdetail::Distances live, V* out, const Queries& mesh,
                                             const Sizes<2>& sizes) {
    interpolateBox(block, first, live, out, mesh, sizes);
  }
};

template <class V, class GridArg, class T>
struct Interp2DKernel_NonCompactQuery : elementwise::RunsWholeBlocks {
  using Queries = Scattered<2, GridArg, T, V>;

  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, V* out, Queries queries, Sizes<2> sizes,
                                      unsigned long) {
    if (it.isOutside()) return;
    long long bins[2] = {};
    doNDIndexSearch(bins, queries, sizes, it.index);
    out[it.index] = queries.valueOf(it.index, bins, sizes, sizes.strides());
  }
  template <class Block>
  static GPURUNTIME_DEVICE void applyToBlock(const Block& block, launchdetail::Distances first,
                                             launchdetail::Distances live, V* out, const Queries& queries,
                                             const Sizes<2>& sizes, unsigned long count) {
    interpolateChunk<launchdetail::preferredBlockSize>(block, out, queries, sizes, first.x, live.x, count);
  }
};

template <class GridArg, class T, class V>
void Interp2dKernel_CompactQuery_Invoker(CUstream_st* stream, V* out, const Axes<2, GridArg>& grids, const V* values,
                                         const Axes<2, const T*>& queries, const long long* bins,
                                         const std::vector<unsigned long>& querySizes,
                                         const std::vector<unsigned long>& valueSizes, const V& extrapolation,
                                         Methods methods) {
  const Mesh<2, GridArg, T, V> mesh{grids,
                                    queries,
                                    binsOfDimensions<2>(bins, querySizes),
                                    firstSizes<2>(querySizes.data()),
                                    {values, extrapolation, methods}};
  elementwise2d::launchWithDeviceFunctor<Interp2DKernel_CompactQuery<V, GridArg, T>>(
      stream, querySizes[0], querySizes[1], out, mesh, firstSizes<2>(valueSizes.data()));
}

template <class GridArg, class T, class V>
void Interp2dKernel_NonCompactQuery_Invoker(CUstream_st* stream, V* out, const Axes<2, GridArg>& grids, const V* values,
                                            const Axes<2, const T*>& queries,
                                            const std::vector<unsigned long>& valueSizes, unsigned long queryCount,
                                            const V& extrapolation, Methods methods) {
  const Scattered<2, GridArg, T, V> scattered{grids, queries, {values, extrapolation, methods}};
  elementwise::launchWithDeviceFunctor<Interp2DKernel_NonCompactQuery<V, GridArg, T>>(
      stream, queryCount, out, scattered, firstSizes<2>(valueSizes.data()), queryCount);
}

}  // namespace gpuruntime::interp
