/// @file
/// The kernels of Permute. They read the plan of the call from constant memory.
#pragma once

#include <gpuruntime/launcher/fixed1dblock.hpp>
#include <gpuruntime/launcher/fixed2dblock.hpp>

namespace gpuruntime {
namespace {

constexpr unsigned long maxPermuteRank = 64;
using PlanSymbol = unsigned long[maxPermuteRank];

GPURUNTIME_CONSTANT_SYMBOL(PlanSymbol, permuteInputSize);
GPURUNTIME_CONSTANT_SYMBOL(PlanSymbol, permuteOutputSize);
GPURUNTIME_CONSTANT_SYMBOL(PlanSymbol, permuteGridDim);
GPURUNTIME_CONSTANT_SYMBOL(PlanSymbol, permuteOrder);

using gpucommon::hostDeviceMath::minSizeT;
using platform::Live;
using platform::Thread;

/// Distance of neighbours along a dimension: the product of the sizes below it.
GPURUNTIME_DEVICE unsigned long getStride(const unsigned long* sizes, unsigned long dim) {
  unsigned long stride = 1;
  for (unsigned long k = 0; k < dim; ++k) stride *= sizes[k];
  return stride;
}

GPURUNTIME_DEVICE unsigned long computeCoordFromLinIdx(unsigned long index, const unsigned long* sizes,
                                                       unsigned long dim) {
  return index / getStride(sizes, dim) % sizes[dim];
}

/// Where walk number `number` along output dimension k begins.
GPURUNTIME_DEVICE unsigned long getOffsetAlongDim(unsigned long number, unsigned long k, unsigned long blockWidth,
                                                  unsigned long jump, unsigned long steps) {
  if (k == 0 || permuteOrder[k] == 1) number *= blockWidth;
  return k == jump ? number * steps : number;
}

/// A position in both arrays.
struct Position {
  unsigned long out;
  unsigned long in;
};

/// The first element that a block moves. Blocks beyond the grid of walks wrap around, and move again what others do.
GPURUNTIME_DEVICE Position computeFirstElemLinIdx(unsigned long block, unsigned long blockWidth, unsigned long rank,
                                                  unsigned long jump, unsigned long steps) {
  Position first{0, 0};
  unsigned long outStride = 1;
  for (unsigned long k = 0; k < rank; ++k) {
    const unsigned long offset = getOffsetAlongDim(block % permuteGridDim[k], k, blockWidth, jump, steps);
    block /= permuteGridDim[k];
    first.out += offset * outStride;
    first.in += offset * getStride(permuteInputSize, permuteOrder[k] - 1);
    outStride *= permuteOutputSize[k];
  }
  return first;
}

/// The output dimension that was input dimension 0, or `rank`.
GPURUNTIME_DEVICE unsigned long findDimP(unsigned long rank) {
  unsigned long p = 0;
  while (p < rank && permuteOrder[p] != 1) ++p;
  return p;
}

GPURUNTIME_DEVICE unsigned long getFormerFirstDimStride(unsigned long rank) {
  return getStride(permuteOutputSize, findDimP(rank));
}

GPURUNTIME_DEVICE unsigned long computeFirstElemCoordInDimP(unsigned long outIndex, unsigned long rank) {
  const unsigned long p = findDimP(rank);
  return p < rank ? computeCoordFromLinIdx(outIndex, permuteOutputSize, p) : 0;
}

/// Runs of elements along dimension 0, which both arrays have in common: block (B, 1), which walks along `jump`.
template <class T>
struct PermuteKernelFixDim1 : BlockFunctor<0> {
  static constexpr unsigned int joined = platform::joinedRuns<T>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockIterator& it, T* output,
                                      const T* input, unsigned long rank, unsigned long countX, unsigned long jump,
                                      unsigned long steps) {
    const unsigned long width = block.shape().x, reach = joined * width;
    const Position first = computeFirstElemLinIdx(it.block, width, rank, jump, steps);
    const unsigned long lengthX = permuteOutputSize[0], x = first.out % lengthX;
    if (jump == 0) {
      const unsigned long end = minSizeT(steps * width, lengthX - x);
      for (unsigned long at = 0; at < end; at += reach) {
        platform::copyRun(block, output + first.out + at, input + first.in + at, minSizeT(end - at, reach), countX);
      }
      return;
    }
    if (joined > 1 && x % reach != 0) return;  // A neighbour does this block's part.
    const unsigned long live = minSizeT(lengthX - x, reach);
    const unsigned long toGo = permuteOutputSize[jump] - computeCoordFromLinIdx(first.out, permuteOutputSize, jump);
    const unsigned long outStep = getStride(permuteOutputSize, jump);
    const unsigned long inStep = getStride(permuteInputSize, permuteOrder[jump] - 1);
    const T* from = input + first.in;
    T* to = output + first.out;
    for (unsigned long step = 0; step < steps && step < toGo; ++step, from += inStep, to += outStep) {
      platform::prefetchRunAhead(from, inStep, live);
      platform::copyRun(block, to, from, live, countX);
    }
  }
};

/// Tiles of output dimensions 0 and p, transposed: block (B, B), B at most TILE, which walks along one of the two.
template <class T, unsigned int TILE>
struct PermuteKernelVaryDim1 : BlockFunctor<0> {
  static constexpr unsigned int joined = platform::joinedTiles<T, TILE>;
  static constexpr unsigned int longest = joined * TILE;

  struct Shared {
    T shm[longest][platform::tilePitch<T, longest>];
  };

  static GPURUNTIME_DEVICE void apply(const Block& launched, const cuda::Fixed2DBlockIterator& it, T* output,
                                      const T* input, unsigned long rank, unsigned long countX, unsigned long countY,
                                      unsigned long jump, unsigned long steps) {
    GPURUNTIME_SHARED(Shared, shared);
    const auto block = launched.template withShape<longest, longest>();
    const unsigned long width = launched.shape().x, edge = joined * width;
    Position at = computeFirstElemLinIdx(it.blockY * it.numBlocksX + it.blockX, width, rank, jump, steps);
    // The tile's corner: along input dimension 0, which is output dimension p, and along output dimension 0.
    unsigned long x = computeFirstElemCoordInDimP(at.out, rank), y = at.out % permuteOutputSize[0];
    const bool alongY = jump == 0;
    if (joined > 1 && (alongY ? x : y) % edge != 0) return;  // A neighbour does this block's part.

    const unsigned long lengthX = permuteInputSize[0], lengthY = permuteOutputSize[0];
    const unsigned long inStride = getStride(permuteInputSize, permuteOrder[0] - 1);
    const unsigned long outStride = getFormerFirstDimStride(rank);
    platform::prefetchTile<longest>(input + at.in, inStride, Live{lengthX - x, lengthY - y});
    for (unsigned long step = 0; step < steps && x < lengthX && y < lengthY; step += joined) {
      const Live live{lengthX - x, lengthY - y};
      const T* from = input + at.in;
      platform::loadTile(block, shared.shm, live, from, inStride);
      platform::prefetchTile<longest>(from + (alongY ? inStride * edge : edge), inStride, live);
      block.sync();
      platform::storeTransposed(block, shared.shm, Live{live.y, live.x}, output + at.out, outStride, countX * countY);
      block.sync();
      (alongY ? y : x) += edge;
      at.in += alongY ? inStride * edge : edge;
      at.out += alongY ? edge : outStride * edge;
    }
  }
};

}  // namespace
}  // namespace gpuruntime
