#include <gpuruntime/interp/verifyCartesianGrid.hpp>
#include <gpuruntime/launcher/elementwise.hpp>
#include <gpuruntime/launcher/elementwise2d.hpp>
#include <gpuruntime/launcher/elementwise3d.hpp>

#include "interp/sizeSymbols.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

GPURUNTIME_CONSTANT_SYMBOL(interp::SizesSymbol, inDataSz);

// 0 once a kernel has met an element that is no grid point of its coordinate.
GPURUNTIME_DEVICE_SYMBOL(unsigned int, dCartesianGrid);

GPURUNTIME_DEVICE void reportMismatch() {
  platform::atomicAnd(&dCartesianGrid, 0);
}

/// A box as a whole: rows, in which only the coordinate of dimension 0 varies.
template <class T>
struct VerifyBox : elementwise::RunsWholeBlocks {
  static constexpr unsigned int joinedBlocks = 32;

  template <class Block>
  static GPURUNTIME_DEVICE void applyToBlock(const Block& block, launchdetail::Distances first,
                                             launchdetail::Distances live, const T* full, const T* grid,
                                             unsigned long dimension, unsigned long sizeX, unsigned long sizeY) {
    constexpr unsigned int piece = launchdetail::preferredBlockSize;
    const auto threads = block.template withShape<piece>();
    bool differs = false;
    for (unsigned long z = first.z; z < first.z + live.z; ++z) {
      for (unsigned long y = first.y; y < first.y + live.y; ++y) {
        const T* const points = dimension == 0 ? grid : grid + (dimension == 1 ? y : z);
        const unsigned long step = dimension == 0 ? 1 : 0;
        for (unsigned long x = first.x; x < first.x + live.x; x += piece) {
          const T* const row = full + (z * sizeY + y) * sizeX;
          differs |= threads.findsAny(platform::Live{first.x + live.x - x}, [=](platform::Thread thread) {
            return !(row[x + thread.x] == points[(x + thread.x) * step]);
          });
        }
      }
    }
    if (differs) reportMismatch();
  }
};

template <class T>
struct Verify2DCartesianGrid : VerifyBox<T> {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, const T* full, const T* grid,
                                      unsigned long dimension, unsigned long sizeX, unsigned long) {
    if (it.isOutside()) return;
    if (!(full[it.y * sizeX + it.x] == grid[dimension == 0 ? it.x : it.y])) reportMismatch();
  }
};

template <class T>
struct Verify3DCartesianGrid : VerifyBox<T> {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise3DIterator& it, const T* full, const T* grid,
                                      unsigned long dimension, unsigned long sizeX, unsigned long sizeY) {
    if (it.isOutside()) return;
    const unsigned long coordinate = dimension == 0 ? it.x : (dimension == 1 ? it.y : it.z);
    if (!(full[(it.z * sizeY + it.y) * sizeX + it.x] == grid[coordinate])) reportMismatch();
  }
};

template <class T>
struct VerifyNDCartesianGridKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, const T* full, const T* grid,
                                      unsigned long dimension) {
    if (it.isOutside()) return;
    const auto index = static_cast<unsigned int>(it.index);
    if (!(full[index] == grid[interp::computeCoordFromLinIdx(index, inDataSz, dimension)])) reportMismatch();
  }
};

/// Starts the kernel of the number of dimensions; false if its sizes can't be copied.
template <class T>
bool launchVerification(CUstream_st* stream, const T* full, const T* grid, unsigned long dimension,
                        const unsigned long* sizes, unsigned long numDimensions) {
  if (numDimensions == 2) {
    elementwise2d::launchWithDeviceFunctor<Verify2DCartesianGrid<T>>(stream, sizes[0], sizes[1], full, grid, dimension,
                                                                     sizes[0], sizes[1]);
    return true;
  }
  if (numDimensions == 3) {
    elementwise3d::launchWithDeviceFunctor<Verify3DCartesianGrid<T>>(stream, sizes[0], sizes[1], sizes[2], full, grid,
                                                                     dimension, sizes[0], sizes[1]);
    return true;
  }
  if (!interp::copySizes(inDataSz, sizes, numDimensions, stream)) return false;
  elementwise::launchWithDeviceFunctor<VerifyNDCartesianGridKernel<T>>(
      stream, interp::getStride(sizes, numDimensions, numDimensions), full, grid, dimension);
  return true;
}

}  // namespace

template <class T>
bool VerifyNDCartesianGrid::Invoker<T>::operator()(CUstream_st* stream, const T* full, const T* grid,
                                                   unsigned long dimension, unsigned long const* sizes,
                                                   unsigned long numDimensions) const {
  unsigned int word = 1;
  if (platform::cudaMemcpyToSymbol(dCartesianGrid, &word, sizeof word) != cudaSuccess) return false;
  if (!launchVerification(stream, full, grid, dimension, sizes, numDimensions)) return false;
  return platform::cudaMemcpyFromSymbol(&word, dCartesianGrid, sizeof word) == cudaSuccess && word != 0;
}

GPURUNTIME_INSTANTIATE(VerifyNDCartesianGrid, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
