#include <gpuruntime/elmath/transpose.hpp>
#include <gpuruntime/launcher/fixed2dblock.hpp>

#include "gpucommon/CUDAOps.hpp"
#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

constexpr unsigned int tileSize = 16;

using platform::Live;
using platform::Thread;

template <bool CONJ, class T>
GPURUNTIME_DEVICE T conjugateIf(T value) {
  if constexpr (CONJ) {
    return gpucommon::conjugated(value);
  } else {
    return value;
  }
}

// A row of a tile is one element longer than the tile, so that a column does not fall on one memory bank.
template <class T, unsigned int TILE>
using Tile = T[TILE][TILE + 1];

template <class T, unsigned int TILE, bool CONJ>
struct TransposeKernel : BlockFunctor<TILE, TILE> {
  static constexpr unsigned int walkSide = platform::blocksPerLine<T, TILE>;

  struct Shared {
    Tile<T, TILE> block;
  };

  static GPURUNTIME_DEVICE void apply(const platform::Block<TILE, TILE>& block, const cuda::Fixed2DBlockIterator& it,
                                      T* output, const T* input) {
    GPURUNTIME_SHARED(Shared, shared);
    const unsigned long numX = it.sizeX, numY = it.sizeY;
    const unsigned long left = TILE * it.blockX, top = TILE * it.blockY;
    const unsigned long width = Live::after(left, numX), height = Live::after(top, numY);

    block.forEachThread(Live{width, height}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= width || thread.y >= height)) return;
      shared.block[thread.y][thread.x] = conjugateIf<CONJ>(input[(top + thread.y) * numX + left + thread.x]);
    });
    platform::prefetchNextTile<TILE>(input + top * numX + left, numX);
    platform::prefetchOutputTile<TILE>(output, static_cast<long>((left + TILE) * numY + top), numY);
    block.sync();

    const platform::TransposedTile columns(shared.block);
    const bool isWhole = width >= TILE && height >= TILE;
    platform::OutputTile<T, TILE> target(output, static_cast<long>(left * numY + top), numY, isWhole, numX * numY);
    block.forEachThread(Live{height, width}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= height || thread.y >= width)) return;
      target.at(thread) = columns(thread.y, thread.x);
    });
    target.flush(block);
  }
};

/// Swaps a tile with its mirror image. The one block of the pair with blockX >= blockY reads both before it writes.
template <class T, unsigned int TILE, bool CONJ>
struct TransposeInPlaceKernel : BlockFunctor<TILE, TILE> {
  struct Shared {
    Tile<T, TILE> blockB;
    Tile<T, TILE> blockC;
  };

  static GPURUNTIME_DEVICE void apply(const platform::Block<TILE, TILE>& block, const cuda::Fixed2DBlockIterator& it,
                                      T* data) {
    if (it.blockX < it.blockY) return;
    GPURUNTIME_SHARED(Shared, shared);
    const unsigned long numX = it.sizeX, numY = it.sizeY;
    const unsigned long a = TILE * it.blockX, b = TILE * it.blockY;
    // Read in the layout of numX rows, written in the layout of numY rows.
    const bool doMirror = it.blockX != it.blockY && it.blockY < it.numBlocksX && it.blockX < it.numBlocksY;

    block.forEachThread([&](Thread thread) {
      const unsigned long x1 = a + thread.x, y1 = b + thread.y, x2 = b + thread.x, y2 = a + thread.y;
      if (x1 < numX && y1 < numY) shared.blockB[thread.y][thread.x] = conjugateIf<CONJ>(data[y1 * numX + x1]);
      if (doMirror && x2 < numX && y2 < numY) {
        shared.blockC[thread.y][thread.x] = conjugateIf<CONJ>(data[y2 * numX + x2]);
      }
    });
    block.sync();

    const platform::TransposedTile columnsB(shared.blockB), columnsC(shared.blockC);
    block.forEachThread([&](Thread thread) {
      const unsigned long x1 = a + thread.x, y1 = b + thread.y, x2 = b + thread.x, y2 = a + thread.y;
      if (x2 < numY && y2 < numX) data[y2 * numY + x2] = columnsB(thread.y, thread.x);
      if (doMirror && x1 < numY && y1 < numX) data[y1 * numY + x1] = columnsC(thread.y, thread.x);
    });
  }
};

template <bool CONJ, class T>
void transpose(CUstream_st* stream, T* output, const T* input, unsigned long numX, unsigned long numY) {
  if (output == input) {
    fixed2dblock::launchWithDeviceFunctor<TransposeInPlaceKernel<T, tileSize, CONJ>>(stream, numX, numY, tileSize,
                                                                                     tileSize, output);
  } else {
    fixed2dblock::launchWithDeviceFunctor<TransposeKernel<T, tileSize, CONJ>>(stream, numX, numY, tileSize, tileSize,
                                                                              output, input);
  }
}

// Without conjugation an element is its bits, and types of one width share a kernel.
template <class T>
void transposeBits(CUstream_st* stream, T* output, const T* input, unsigned long numX, unsigned long numY) {
  using Storage = gpucommon::StorageOf<T>;
  transpose<false>(stream, reinterpret_cast<Storage*>(output), reinterpret_cast<const Storage*>(input), numX, numY);
}

}  // namespace

template <class T>
void Transpose::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long numX,
                                       unsigned long numY) const {
  transposeBits(stream, output, input, numX, numY);
}

template <class T>
void CTranspose::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long numX,
                                        unsigned long numY) const {
  if constexpr (gpucommon::CUDAIsComplex<T>::value) {
    transpose<true>(stream, output, input, numX, numY);
  } else {
    transposeBits(stream, output, input, numX, numY);
  }
}

GPURUNTIME_INSTANTIATE(Transpose, ALL_TYPES);
GPURUNTIME_INSTANTIATE(CTranspose, ALL_TYPES);

}  // namespace gpuruntime
