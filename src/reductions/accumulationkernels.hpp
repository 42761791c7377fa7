/// @file
/// The kernels of cumulative sums and products, and of the fix-up that joins chunks.
#pragma once

#include <gpuruntime/launcher/fixed1dblockand1dgrid.hpp>

#include "reductions/reductionoperators.hpp"
#include "reductions/reductionutils.hpp"

namespace gpuruntime::accumulationkernels {

using gpucommon::hostDeviceMath::minSizeT;
using platform::Live;
using platform::Thread;
using platform::ThreadIndex;

/// Threads of a block of these kernels.
constexpr unsigned int blockSize = 128;

/// Tiles of `pitch` elements, the last maybe of fewer, that lie behind each other: each on the leaves of a tree of its
/// own, whose root is on level `levels`. A tile is a segment, or, `isChained`, 256 elements of one.
struct Tiles {
  unsigned long pitch;
  unsigned int levels;
  bool isChained;
  unsigned long live;   ///< Elements in all.
  unsigned long count;  ///< Tiles.

  /// The tiles of segments of length L. The smallest tree does: where a larger one has only the identity, it changes
  /// nothing but the root, once.
  static GPURUNTIME_DEVICE Tiles ofSegments(unsigned long L, unsigned long tileSize) {
    Tiles tiles{minSizeT(L, tileSize), 0, L > tileSize, 0, 0};
    while (1UL << tiles.levels < tiles.pitch) ++tiles.levels;
    return tiles;
  }

  /// Takes as many as `most` elements; of a segment's tiles, only the whole ones, if there are.
  GPURUNTIME_DEVICE void setLive(unsigned long elements, unsigned long most) {
    live = minSizeT(elements, most);
    if (isChained && live > pitch) live -= live % pitch;
    count = (live - 1) / pitch + 1;
  }
  /// True if a whole tile has an element at each leaf.
  GPURUNTIME_DEVICE bool isDense() const { return pitch == 1UL << levels; }
  GPURUNTIME_DEVICE unsigned long leaves() const { return count << levels; }
  GPURUNTIME_DEVICE unsigned long pairs(unsigned int level) const { return count << levels >> (level + 1); }

  /// Runs body(first element, first leaf, elements) for each tile.
  template <class Body>
  GPURUNTIME_DEVICE void forEachRun(Body body) const {
    for (unsigned long tile = 0; tile < count; ++tile) {
      const unsigned long element = tile * pitch;
      body(element, tile << levels, minSizeT(pitch, live - element));
    }
  }
};

/// Runs body(leaf) for the leaves of [first, end), two a thread or, of larger trees, as many as there are.
template <unsigned int LEAVES, class Block, class Body>
GPURUNTIME_DEVICE void forEachLeaf(const Block& block, unsigned long first, unsigned long end, Body body) {
  for (unsigned int half = 0; half < 2; ++half) {
    const unsigned long start = first + half * (LEAVES / 2);
    const unsigned long live = Live::after(start, end);
    block.forEachThread(Live{live}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live)) return;
      body(start + thread.x);
    });
  }
}

template <unsigned int BlockSize, class T, class Op>
struct SegmentedAccumulateKernel : BlockFunctor<BlockSize> {
  static constexpr unsigned long tileSize = 2 * BlockSize;
  using Cells = platform::PairTrees<T, tileSize>;
  static constexpr unsigned int leaves = Cells::leaves;
  /// One thread for each pair of leaves.
  using Wide = platform::Block<leaves / 2>;
  static constexpr bool takesSeveral = leaves > tileSize;

  struct Shared {
    Cells sharedData;
    T totals[takesSeveral ? leaves : 1];
  };

  static GPURUNTIME_DEVICE void apply(const platform::Block<BlockSize>& launched,
                                      const cuda::Fixed1DBlockAnd1DGridIterator& it, T* totals, T* data,
                                      unsigned long N, unsigned long L) {
    const unsigned long start = it.block * L;
    if (start >= N) return;
    Tiles tiles = Tiles::ofSegments(L, tileSize);
    const unsigned long together = takesSeveral && !tiles.isChained ? leaves >> tiles.levels : 1;
    if ((it.block & (together - 1)) != 0) return;  // A neighbour does this block's part.
    const unsigned long end = minSizeT(N, start + together * L);
    const unsigned long most = tiles.pitch * (leaves >> tiles.levels);

    GPURUNTIME_SHARED(Shared, shared);
    const Wide block = launched.template withShape<leaves / 2>();
    Cells& cells = shared.sharedData;
    for (unsigned long first = start; first < end; first += tiles.live) {
      T* const elements = data + first;
      const unsigned long carryAt = first > start ? tiles.count - 1 : 0;
      tiles.setLive(end - first, most);
      platform::prefetchRunAhead(elements, most, most);
      copyIntoSharedMemory(block, cells, elements, tiles);
      if (first > start) updateInitialValue(block, cells, shared.totals[carryAt]);
      block.sync();
      upSweepBlock(block, cells, tiles);
      resetFinalValue(block, shared, tiles);
      block.sync();
      downSweepBlock(block, cells, tiles);
      copyOutOfSharedMemory(block, elements, shared, tiles);
      block.sync();
    }
    const unsigned long segments = tiles.isChained ? 1 : tiles.count;
    const T* segmentTotals = shared.totals + (tiles.isChained ? tiles.count - 1 : 0);
    forEachLeaf<leaves>(block, 0, segments, [&](ThreadIndex i) { totals[it.block + i] = segmentTotals[i]; });
  }

 private:
  /// Each element to its leaf; the identity where there is none.
  static GPURUNTIME_DEVICE void copyIntoSharedMemory(const Wide& block, Cells& cells, T* data, const Tiles& tiles) {
    if (standsOnArray(tiles)) return cells.useArray(data);
    cells.useOwnLeaves();
    const auto to = cells.level(0);
    if (tiles.live < tiles.leaves()) {
      forEachLeaf<leaves>(block, 0, tiles.leaves(), [&](ThreadIndex i) { to[i] = Op::identity(); });
    }
    tiles.forEachRun([&](unsigned long element, unsigned long leaf, unsigned long live) {
      forEachLeaf<leaves>(block, 0, live, [&](ThreadIndex i) { to[leaf + i] = data[element + i]; });
    });
  }

  /// The carry enters through the first leaf, which the same thread has just written.
  static GPURUNTIME_DEVICE void updateInitialValue(const Wide& block, Cells& cells, const T& carry) {
    block.forEachThread(Live{1}, [&](Thread thread) {
      if (platform::isIdle(thread.x > 0)) return;
      T& leaf = cells.level(0)[0];
      leaf = Op::apply(carry, leaf);
    });
  }

  /// Each node becomes the sum of its children.
  static GPURUNTIME_DEVICE void upSweepBlock(const Wide& block, Cells& cells, const Tiles& tiles) {
    for (unsigned int level = 0; level < tiles.levels; ++level) {
      const unsigned long pairs = tiles.pairs(level);
      const auto children = cells.level(level), parents = cells.level(level + 1);
      block.forEachThread(Live{pairs}, [&](Thread thread) {
        if (platform::isIdle(thread.x >= pairs)) return;
        parents[thread.x] = Op::apply(children[2 * thread.x], children[2 * thread.x + 1]);
      });
      block.sync();
    }
  }

  /// The roots become totals, and the identity takes their place.
  static GPURUNTIME_DEVICE void resetFinalValue(const Wide& block, Shared& shared, const Tiles& tiles) {
    Cells& cells = shared.sharedData;
    if (takesSeveral && tiles.isChained) {
      // The trees grew beside each other: of all their nodes, only those over the first leaf feel the carry.
      block.forEachThread(Live{1}, [&](Thread thread) {
        if (platform::isIdle(thread.x > 0)) return;
        for (unsigned long tile = 1; tile < tiles.count; ++tile) {
          T sum = cells.level(tiles.levels)[tile - 1];
          T* leaf = &cells.level(0)[tile << tiles.levels];
          sum = *leaf = Op::apply(sum, *leaf);
          for (unsigned int level = 0; level < tiles.levels; ++level) {
            const unsigned long left = tile << (tiles.levels - level);
            sum = Op::apply(sum, cells.level(level)[left + 1]);
            cells.level(level + 1)[left / 2] = sum;
          }
        }
      });
    }
    const bool isLowered = 1UL << tiles.levels < tileSize;
    const auto roots = cells.level(tiles.levels);
    forEachLeaf<leaves>(block, 0, tiles.count, [&](ThreadIndex tile) {
      const T root = roots[tile];
      shared.totals[tile] = isLowered ? Op::apply(root, Op::identity()) : root;
      roots[tile] = Op::identity();
    });
  }

  /// Each left child takes what its parent has, the sum of all in front; each right one that and its left neighbour.
  static GPURUNTIME_DEVICE void downSweepBlock(const Wide& block, Cells& cells, const Tiles& tiles) {
    const unsigned int last = standsOnArray(tiles) ? 1 : 0;
    for (unsigned int level = tiles.levels; level-- > last;) {
      const unsigned long pairs = tiles.pairs(level);
      const auto children = cells.level(level), parents = cells.level(level + 1);
      block.forEachThread(Live{pairs}, [&](Thread thread) {
        if (platform::isIdle(thread.x >= pairs)) return;
        const T before = parents[thread.x], left = children[2 * thread.x];
        children[2 * thread.x] = before;
        children[2 * thread.x + 1] = Op::apply(before, left);
      });
      block.sync();
    }
  }

  /// Leaf i holds the sum of all in front of element i: it belongs to element i - 1, and the total to the last.
  static GPURUNTIME_DEVICE void copyOutOfSharedMemory(const Wide& block, T* data, Shared& shared, const Tiles& tiles) {
    Cells& cells = shared.sharedData;
    if (!standsOnArray(tiles)) {
      const auto from = cells.level(0);
      tiles.forEachRun([&](unsigned long element, unsigned long leaf, unsigned long live) {
        forEachLeaf<leaves>(block, 1, live, [&](ThreadIndex i) { data[element + i - 1] = from[leaf + i]; });
      });
    } else if (tiles.levels > 0) {
      // The last level of the sweep, straight to its place. At the end of a tile stands the next one's identity, yet.
      const unsigned long pairs = tiles.pairs(0);
      const auto parents = cells.level(1);
      block.forEachThread(Live{pairs}, [&](Thread thread) {
        if (platform::isIdle(thread.x >= pairs)) return;
        const T before = parents[thread.x], next = parents[thread.x + 1];
        data[2 * thread.x] = Op::apply(before, data[2 * thread.x]);
        data[2 * thread.x + 1] = next;
      });
    }
    forEachLeaf<leaves>(block, 0, tiles.count, [&](ThreadIndex tile) {
      data[minSizeT((tile + 1) * tiles.pitch, tiles.live) - 1] = shared.totals[tile];
    });
  }

  /// True if the array is its own leaves: where the backend likes that, and an element lies at each.
  static GPURUNTIME_DEVICE bool standsOnArray(const Tiles& tiles) {
    return Cells::standsOnArrays && tiles.live == tiles.leaves();
  }
};

/// Rows that a step takes at once, so that a thread has as many loads in flight.
constexpr unsigned int rowsPerStep = 4;

template <class T, class Op>
struct StridedAccumulateKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockAnd1DGridIterator& it, T* totals,
                                      T* data, unsigned long N, unsigned long L, unsigned long S) {
    reductionhelpers::StridedIdx idx;
    if (!reductionhelpers::calculateAndCheckStridedIdx(it, blockSize, S, L, N, idx)) return;
    const Live live{minSizeT<unsigned long>(idx.columns, blockSize)};
    platform::PerThread<T, blockSize> acc;
    T* row = data + idx.inIndex;
    block.forEachThread(live, [&](Thread thread) {
      if (!platform::isIdle(thread.x >= live.x)) acc[thread] = row[thread.x];
    });
    unsigned long r = 1;
    for (row += S; r + rowsPerStep <= L; r += rowsPerStep, row += rowsPerStep * S) {
      for (unsigned int ahead = 0; ahead < rowsPerStep; ++ahead) platform::prefetchRunAhead(row + ahead * S, S, live.x);
      block.forEachThread(live, [&](Thread thread) {
        if (platform::isIdle(thread.x >= live.x)) return;
        T values[rowsPerStep];
        platform::unrolled<rowsPerStep>([&](auto k) { values[k] = row[k * S + thread.x]; });
        T sum = acc[thread];
        platform::unrolled<rowsPerStep>([&](auto k) { row[k * S + thread.x] = sum = Op::apply(sum, values[k]); });
        acc[thread] = sum;
      });
    }
    for (; r < L; ++r, row += S) {
      block.forEachThread(live, [&](Thread thread) {
        if (platform::isIdle(thread.x >= live.x)) return;
        row[thread.x] = acc[thread] = Op::apply(acc[thread], row[thread.x]);
      });
    }
    block.forEachThread(live, [&](Thread thread) {
      if (!platform::isIdle(thread.x >= live.x)) totals[idx.outIndex + thread.x] = acc[thread];
    });
  }
};

/// The kernels of the fix-up: group or segment g is chunk g modulo K of a dimension folded into K of them. Chunk 0
/// stays; each element of the others is combined with the running total of the chunk in front, its adjustment.
template <unsigned int BlockSize, class T, class Op>
struct SegmentedAdjustKernel : BlockFunctor<BlockSize> {
  struct Shared {
    T adjustment;
  };

  static GPURUNTIME_DEVICE void apply(const platform::Block<BlockSize>& block,
                                      const cuda::Fixed1DBlockAnd1DGridIterator& it, const T* adjustments, T* data,
                                      unsigned long N, unsigned long L, unsigned long K) {
    const unsigned long start = it.block * L;
    if (it.block % K == 0 || start >= N) return;
    GPURUNTIME_SHARED(Shared, shared);
    block.forEachThread(Live{1}, [&](Thread thread) {
      if (!platform::isIdle(thread.x > 0)) shared.adjustment = adjustments[it.block - 1];
    });
    block.sync();
    const T adjustment = shared.adjustment;
    const unsigned long end = minSizeT(N, start + L);
    for (unsigned long first = start; first < end; first += BlockSize) {
      block.forEachThread(Live{end - first}, [=](Thread thread) {
        if (platform::isIdle(thread.x >= end - first)) return;
        data[first + thread.x] = Op::apply(data[first + thread.x], adjustment);
      });
    }
  }
};

/// Here the adjustment is the left operand.
template <class T, class Op>
struct StridedAdjustKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockAnd1DGridIterator& it,
                                      const T* adjustments, T* data, unsigned long N, unsigned long L, unsigned long K,
                                      unsigned long S) {
    reductionhelpers::StridedIdx idx;
    if (!reductionhelpers::calculateAndCheckStridedIdx(it, blockSize, S, L, N, idx)) return;
    if (idx.group % K == 0) return;
    const unsigned long columns = idx.columns;
    const T* adjustment = adjustments + idx.outIndex - S;
    T* row = data + idx.inIndex;
    for (unsigned long r = 0; r < L; ++r, row += S) {
      platform::prefetchRunAhead(row, S, minSizeT<unsigned long>(columns, blockSize));
      block.forEachThread(Live{columns}, [=](Thread thread) {
        if (platform::isIdle(thread.x >= columns)) return;
        row[thread.x] = Op::apply(adjustment[thread.x], row[thread.x]);
      });
    }
  }
};

template <class Op, class T>
void accumulate(CUstream_st* stream, T* totals, T* data, unsigned long N, unsigned long L, unsigned long S) {
  reductionhelpers::launchByShape<blockSize, SegmentedAccumulateKernel<blockSize, T, Op>,
                                  StridedAccumulateKernel<T, Op>>(stream, N, L, S, totals, data, N, L);
}

template <class Op, class T>
void adjust(CUstream_st* stream, T* adjustments, T* data, unsigned long N, unsigned long L, unsigned long K,
            unsigned long S) {
  reductionhelpers::launchByShape<blockSize, SegmentedAdjustKernel<blockSize, T, Op>, StridedAdjustKernel<T, Op>>(
      stream, N, L, S, adjustments, data, N, L, K);
}

}  // namespace gpuruntime::accumulationkernels
