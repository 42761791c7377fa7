/// @file
/// The kernels that find an extreme along one dimension of an array, with its position: of equal elements, the first.
/// They follow the shapes and the order of reductionkernels.hpp.
#pragma once

#include <cstring>

#include "reductions/reductiontransforms.hpp"
#include "reductions/reductionutils.hpp"

namespace gpuruntime::reductionkernels {

using gpucommon::hostDeviceMath::minSizeT;
using platform::Live;
using platform::PerThread;
using platform::Thread;
using reductiontransforms::Value;

/// An element and where it stands.
template <class T>
struct ValueIndexPair {
  T value;
  unsigned long index;
};

/// `chooses ? a : b` by a mask. A conditional expression would make a conditional store of an element that stays, and
/// that keeps loops over lanes from being vectorised.
template <class T>
GPURUNTIME_DEVICE T select(bool chooses, const T& a, const T& b) {
  if constexpr (gpucommon::CUDATraits<T>::iscomplex) {
    return T{select(chooses, a.x, b.x), select(chooses, a.y, b.y)};
  } else {
    using Bits = gpucommon::StorageOf<T>;
    const auto mask = static_cast<Bits>(Bits{0} - static_cast<Bits>(chooses));
    const auto bits = static_cast<Bits>((gpucommon::bitsOf(a) & mask) | (gpucommon::bitsOf(b) & ~mask));
    T value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
}

/// Replaces (value, index) by (other, otherIndex) if that is the better, or as good and further to the front.
template <class Op, class T, class Index>
GPURUNTIME_DEVICE void pick(T& value, Index& index, const T& other, Index otherIndex) {
  const bool isInFront = index < otherIndex;
  const bool stays = (isInFront & !Op::beats(other, value)) | (!isInFront & Op::beats(value, other));
  value = select(stays, value, other);
  index = select(stays, index, otherIndex);
}

/// The same for an element known to stand further back.
template <class Op, class T, class Index>
GPURUNTIME_DEVICE void keepBetter(T& value, Index& index, const T& other, Index otherIndex) {
  const bool goes = Op::beats(other, value);
  value = select(goes, other, value);
  index = select(goes, otherIndex, index);
}

/// The values of the lanes of a block, and where they stand.
template <unsigned int BLOCK_SIZE, class T>
struct IndexReductionStorage {
  T sData[BLOCK_SIZE];
  unsigned long sIdx[BLOCK_SIZE];
};

/// Lane t picks between itself and lane t + h for h = 128, 64, ..., 2, 1. Each thread has stored its pair; the result
/// is the same in all of them.
template <unsigned int BLOCK_SIZE, class T, class Op, class Block>
GPURUNTIME_DEVICE ValueIndexPair<T> threadBlockIndexReduction(const Block& block,
                                                              IndexReductionStorage<BLOCK_SIZE, T>& shared) {
  static_assert(BLOCK_SIZE == 256, "eight levels");
  platform::unrolled<8>([&](auto level) {
    constexpr unsigned int h = BLOCK_SIZE >> (level + 1);
    block.sync();
    block.forEachThread(Live{h}, [&](Thread thread) {
      const auto t = thread.x;
      if (platform::isIdle(t >= h)) return;
      pick<Op>(shared.sData[t], shared.sIdx[t], shared.sData[t + h], shared.sIdx[t + h]);
    });
  });
  block.sync();
  return {shared.sData[0], shared.sIdx[0]};
}

/// The extremes of SEGMENTS neighbouring segments of n elements, n at most MOST, picked in the order of a block for
/// each. An identity never wins, so that lanes without an element are left out. `base(segment)` elements stand in front
/// of position 1.
template <unsigned int MOST, unsigned int SEGMENTS, class T, class Op, class Block, class Base>
GPURUNTIME_DEVICE void pickSideBySide(const Block& block, T* values, double* indices, const T* in, unsigned long n,
                                      Base base) {
  // As wide as the values' parts: a loop then deals with one width only.
  using Index = gpucommon::StorageOf<RealOf<T>>;
  // Lane by lane, each of all segments.
  T lanes[MOST * SEGMENTS];
  Index places[MOST * SEGMENTS];
  const auto threads = block.template withShape<MOST * SEGMENTS>();
  platform::loadRuns<SEGMENTS>(lanes, in, n);
  threads.forEachThread(Live{n * SEGMENTS}, [&](Thread thread) { lanes[thread.x] = Value<T>::apply(lanes[thread.x]); });
  unsigned long h = 1;
  while (2 * h < n) h *= 2;
  threads.forEachThread(Live{h * SEGMENTS},
                        [&](Thread thread) { places[thread.x] = static_cast<Index>(thread.x / SEGMENTS); });
  // Every other element meets its first partner here, which stands further back.
  threads.forEachThread(Live{(n - minSizeT(h, n)) * SEGMENTS}, [&](Thread thread) {
    const platform::ThreadIndex t = thread.x, other = t + h * SEGMENTS;
    keepBetter<Op>(lanes[t], places[t], lanes[other], static_cast<Index>(other / SEGMENTS));
  });
  for (h /= 2; h > 0; h /= 2) {
    threads.forEachThread(Live{h * SEGMENTS}, [&](Thread thread) {
      const platform::ThreadIndex t = thread.x, other = t + h * SEGMENTS;
      pick<Op>(lanes[t], places[t], lanes[other], places[other]);
    });
  }
  threads.forEachThread(Live{SEGMENTS}, [&](Thread thread) {
    values[thread.x] = lanes[thread.x];
    indices[thread.x] = static_cast<double>(base(thread.x) + places[thread.x] + 1);
  });
}

/// The extremes of contiguous segments of L elements, a block each; the last may be shorter. Positions count on over K
/// neighbouring segments.
template <unsigned int BLOCK_SIZE, class T, class Op>
struct SegmentedIndexReduceKernel : BlockFunctor<BLOCK_SIZE> {
  using Block = platform::Block<BLOCK_SIZE>;
  using Storage = IndexReductionStorage<BLOCK_SIZE, T>;
  static constexpr unsigned int joined = platform::blocksAtOnce;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockAnd1DGridIterator& it, T* values,
                                      double* indices, const T* in, unsigned long N, unsigned long L, unsigned long K) {
    const unsigned long start = it.block * L;
    if (start >= N) return;
    if constexpr (joined > 1) {
      const unsigned long first = it.block / joined * joined;
      if (L <= BLOCK_SIZE / 2 && (first + joined) * L <= N) {
        if (it.block != first) return;  // A neighbour does this block's part.
        const auto base = [=](unsigned long segment) { return (first + segment) % K * L; };
        return pickSideBySide<BLOCK_SIZE / 2, joined, T, Op>(block, values + first, indices + first, in + start, L,
                                                             base);
      }
    }
    GPURUNTIME_SHARED(Storage, shared);
    const T* const segment = in + start;
    const unsigned long length = minSizeT(N - start, L);
    PerThread<T, BLOCK_SIZE> best;
    PerThread<unsigned long, BLOCK_SIZE> bestRow;
    block.forEachThread([&](Thread thread) {
      best[thread] = Op::identity();
      bestRow[thread] = 0;
    });
    block.forEachThread(Live{length}, [&](Thread thread) {
      if (!platform::isIdle(thread.x >= length)) best[thread] = Value<T>::apply(segment[thread.x]);
    });
    const auto fold = [&](Thread thread, const T& element, unsigned long row) {
      keepBetter<Op>(best[thread], bestRow[thread], Value<T>::apply(element), row + 1);
    };
    const unsigned long rows = length < BLOCK_SIZE ? 0 : length / BLOCK_SIZE - 1;
    reductionhelpers::foldRows<Op>(block, Live{}, segment + BLOCK_SIZE, BLOCK_SIZE, rows, best, fold);
    const T* const tail = segment + (rows + 1) * BLOCK_SIZE;
    const unsigned long rest = length < BLOCK_SIZE ? 0 : length % BLOCK_SIZE;
    block.forEachThread(Live{rest}, [&](Thread thread) {
      if (!platform::isIdle(thread.x >= rest)) fold(thread, tail[thread.x], rows);
    });
    block.forEachThread([&](Thread thread) {
      shared.sData[thread.x] = best[thread];
      shared.sIdx[thread.x] = bestRow[thread] * BLOCK_SIZE + thread.x;
    });
    const ValueIndexPair<T> first = threadBlockIndexReduction<BLOCK_SIZE, T, Op>(block, shared);
    block.forEachThread(Live{1}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= 1)) return;
      values[it.block] = first.value;
      indices[it.block] = static_cast<double>(it.block % K * L + first.index + 1);
    });
  }
};

/// The extremes of columns, a thread each, from the first row to the last. Positions count on over K neighbouring
/// groups.
template <unsigned int BLOCK_SIZE, class T, class Op>
struct StridedIndexReduceKernel : BlockFunctor<BLOCK_SIZE> {
  using Block = platform::Block<BLOCK_SIZE>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockAnd1DGridIterator& it, T* values,
                                      double* indices, const T* in, unsigned long N, unsigned long L, unsigned long K,
                                      unsigned long S) {
    reductionhelpers::StridedIdx idx;
    if (!reductionhelpers::calculateAndCheckStridedIdx(it, BLOCK_SIZE, S, L, N, idx)) return;
    const T* const columns = in + idx.inIndex;
    const platform::Live live{idx.columns};
    PerThread<T, BLOCK_SIZE> best;
    PerThread<unsigned long, BLOCK_SIZE> bestRow;
    block.forEachThread(live, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live.x)) return;
      best[thread] = Value<T>::apply(columns[thread.x]);
      bestRow[thread] = 0;
    });
    const auto fold = [&](Thread thread, const T& element, unsigned long row) {
      keepBetter<Op>(best[thread], bestRow[thread], Value<T>::apply(element), row + 1);
    };
    reductionhelpers::foldRows<Op>(block, live, columns + S, S, L - 1, best, fold);
    const unsigned long base = idx.group % K * L;
    block.forEachThread(live, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live.x)) return;
      values[idx.outIndex + thread.x] = best[thread];
      indices[idx.outIndex + thread.x] = static_cast<double>(base + bestRow[thread] + 1);
    });
  }
};

/// Launches the kernel that the shape asks for, on blocks of 256 threads.
template <class T, class Op>
void reduceWithIndex(CUstream_st* stream, T* values, double* indices, const T* in, unsigned long N, unsigned long L,
                     unsigned long K, unsigned long S) {
  reductionhelpers::launchByShape<256, SegmentedIndexReduceKernel<256, T, Op>, StridedIndexReduceKernel<256, T, Op>>(
      stream, N, L, S, values, indices, in, N, L, K);
}

}  // namespace gpuruntime::reductionkernels
