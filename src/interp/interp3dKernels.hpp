/// @file
/// The kernels of three dimensions, and their launch. They read the sizes of the values from constant memory.
#pragma once

#include <gpuruntime/launcher/elementwise3d.hpp>

#include <vector>

#include "interp/meshKernels.hpp"
#include "interp/scatteredKernels.hpp"
#include "interp/sizeSymbols.hpp"

namespace gpuruntime::interp {
namespace {

GPURUNTIME_CONSTANT_SYMBOL(SizesSymbol, interpValueSz);
GPURUNTIME_CONSTANT_SYMBOL(SizesSymbol, interpValueSzNcpQ);

template <class V, class GridArg, class T>
struct Interp3DKernel_CompactQuery : elementwise::RunsWholeBlocks {
  static constexpr unsigned int joinedBlocks = joinedMeshBlocks;
  using Queries = Mesh<3, GridArg, T, V>;

  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise3DIterator& it, V* out, Queries mesh) {
    if (it.isOutside()) return;
    const Sizes<3> sizes = firstSizes<3>(interpValueSz);
    out[(it.z * it.sizeY + it.y) * it.sizeX + it.x] = mesh.valueAt({{it.x, it.y, it.z}}, sizes, sizes.strides());
  }
  template <class Block>
  static GPURUNTIME_DEVICE void applyToBlock(const Block& block, launchdetail::Distances first,
                                             launchdetail::Distances live, V* out, const Queries& mesh) {
    interpolateBox(block, first, live, out, mesh, firstSizes<3>(interpValueSz));
  }
};

struct SizesOfNonCompactQuery {
  static GPURUNTIME_DEVICE const unsigned long* read() { return interpValueSzNcpQ; }
};
template <class V, class GridArg, class T>
using Interp3DKernel_NonCompactQuery = ScatteredKernel<3, GridArg, T, V, SizesOfNonCompactQuery>;

template <class GridArg, class T, class V>
void Interp3dKernel_CompactQuery_Invoker(CUstream_st* stream, V* out, const Axes<3, GridArg>& grids, const V* values,
                                         const Axes<3, const T*>& queries, const long long* bins,
                                         const std::vector<unsigned long>& querySizes,
                                         const std::vector<unsigned long>& valueSizes, const V& extrapolation,
                                         Methods methods) {
  if (!copySizesOrSay(interpValueSz, valueSizes.data(), 3, stream,
                      "Interp3d compact query kernel failed to copy valueSz to constant memory")) {
    return;
  }
  const Mesh<3, GridArg, T, V> mesh{grids,
                                    queries,
                                    binsOfDimensions<3>(bins, querySizes),
                                    firstSizes<3>(querySizes.data()),
                                    {values, extrapolation, methods}};
  elementwise3d::launchWithDeviceFunctor<Interp3DKernel_CompactQuery<V, GridArg, T>>(
      stream, querySizes[0], querySizes[1], querySizes[2], out, mesh);
}

template <class GridArg, class T, class V>
void Interp3dKernel_NonCompactQuery_Invoker(CUstream_st* stream, V* out, const Axes<3, GridArg>& grids, const V* values,
                                            const Axes<3, const T*>& queries,
                                            const std::vector<unsigned long>& valueSizes, unsigned long queryCount,
                                            const V& extrapolation, Methods methods) {
  if (!copySizesOrSay(interpValueSzNcpQ, valueSizes.data(), 3, stream,
                      "Interp3d Noncompact query kernel failed to copy valueSz to constant memory")) {
    return;
  }
  const Scattered<3, GridArg, T, V> scattered{grids, queries, {values, extrapolation, methods}};
  launchScattered<Interp3DKernel_NonCompactQuery<V, GridArg, T>>(stream, out, scattered, queryCount);
}

}  // namespace
}  // namespace gpuruntime::interp
