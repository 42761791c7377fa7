#include <gpuruntime/elmath/rot90.hpp>
#include <gpuruntime/launcher/fixed2dblockwithpages.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

constexpr unsigned int tileSize = 16;

using platform::Live;
using platform::Thread;

template <class T, unsigned int TILE, bool CLOCKWISE>
struct Rot90Kernel : BlockFunctor<TILE, TILE> {
  using Block = platform::Block<TILE, TILE>;
  using Iterator = cuda::Fixed2DBlockWithPagesIterator;

  static constexpr unsigned int walkSide = platform::blocksPerLine<T, TILE>;

  struct Shared {
    T shmem[TILE][TILE + 1];
  };

  static GPURUNTIME_DEVICE void apply(const Block& block, const Iterator& it, T* output, const T* input) {
    GPURUNTIME_SHARED(Shared, shared);
    const unsigned long page = it.indexOfPageStart();
    iCopyInputToSharedMemory(block, it, shared, input + page);
    block.sync();
    iCopySharedMemoryToOutput(block, it, shared, output + page);
  }

  static GPURUNTIME_DEVICE void iCopyInputToSharedMemory(const Block& block, const Iterator& it, Shared& shared,
                                                         const T* input) {
    const unsigned long left = TILE * it.blockX, top = TILE * it.blockY;
    const unsigned long width = Live::after(left, it.sizeX), height = Live::after(top, it.sizeY);
    block.forEachThread(Live{width, height}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= width || thread.y >= height)) return;
      shared.shmem[thread.y][thread.x] = input[(top + thread.y) * it.sizeX + left + thread.x];
    });
    platform::prefetchNextTile<TILE>(input + top * it.sizeX + left, it.sizeX);
  }

  // One of the output's coordinates runs against the input's, so the ragged tile of the input lands at the start of the
  // output: there a coordinate is negative where the tile has nothing.
  static GPURUNTIME_DEVICE void iCopySharedMemoryToOutput(const Block& block, const Iterator& it, const Shared& shared,
                                                          T* output) {
    const auto numX = static_cast<long>(it.sizeX), numY = static_cast<long>(it.sizeY);
    const auto left = static_cast<long>(TILE * it.blockX), top = static_cast<long>(TILE * it.blockY);
    const long firstColumn = CLOCKWISE ? numX - left - long{TILE} : left;
    const long firstRow = CLOCKWISE ? top : numY - top - long{TILE};
    const bool isWhole = left + long{TILE} <= numX && top + long{TILE} <= numY;
    const long nextColumn = CLOCKWISE ? firstColumn - long{TILE} : firstColumn + long{TILE};
    platform::prefetchOutputTile<TILE>(output, nextColumn * numY + firstRow, it.sizeY);

    const platform::TransposedTile columns(shared.shmem);
    platform::OutputTile<T, TILE> target(output, firstColumn * numY + firstRow, it.sizeY, isWhole,
                                         it.sizeX * it.sizeY * it.numPages);
    block.forEachThread([&](Thread thread) {
      const long column = firstColumn + static_cast<long>(thread.y), row = firstRow + static_cast<long>(thread.x);
      if (!isWhole && (column < 0 || column >= numX || row < 0 || row >= numY)) return;
      target.at(thread) = CLOCKWISE ? columns(TILE - 1 - thread.y, thread.x) : columns(thread.y, TILE - 1 - thread.x);
    });
    target.flush(block);
  }
};

template <bool CLOCKWISE, class U>
void rotate(CUstream_st* stream, U* output, const U* input, unsigned long numX, unsigned long numY,
            unsigned long numPages) {
  using Kernel = Rot90Kernel<U, tileSize, CLOCKWISE>;
  namespace launcher = fixed2dblockwithpagesdetail;
  launcher::launchKernel<U*, const U*>(launcher::singleStepKernel<Kernel, U*, const U*>(),
                                       launcher::multiStepKernel<Kernel, U*, const U*>(), stream, numX, numY, numPages,
                                       tileSize, tileSize, output, input);
}

}  // namespace

template <class T>
void Rot90::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long numX,
                                   unsigned long numY, unsigned long numPages, bool clockwise) const {
  using Storage = gpucommon::StorageOf<T>;
  auto* to = reinterpret_cast<Storage*>(output);
  const auto* from = reinterpret_cast<const Storage*>(input);
  if (clockwise) {
    rotate<true>(stream, to, from, numX, numY, numPages);
  } else {
    rotate<false>(stream, to, from, numX, numY, numPages);
  }
}

GPURUNTIME_INSTANTIATE(Rot90, ALL_TYPES);

}  // namespace gpuruntime
