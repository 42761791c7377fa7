/// @file
/// The two kernels that reduce one dimension of an array, a block or a thread a result. The order in which they combine
/// elements is part of every result.
#pragma once

#include "reductions/reductionutils.hpp"

namespace gpuruntime::reductionkernels {

using gpucommon::hostDeviceMath::minSizeT;
using platform::Live;
using platform::PerThread;
using platform::Thread;
using reductionhelpers::LaneOf;

/// The values of the lanes of a block.
template <unsigned int BLOCK_SIZE, class Acc>
struct ReductionStorage {
  Acc sData[BLOCK_SIZE];
};

/// Combines lane t with lane t + h for h = 128, 64, ..., 2, 1, the lower lane on the left. Each thread has stored its
/// value in `sData`; the result is the same in all of them.
template <unsigned int BLOCK_SIZE, class Acc, class Op, class Block>
GPURUNTIME_DEVICE Acc threadBlockReduction(const Block& block, ReductionStorage<BLOCK_SIZE, Acc>& shared) {
  static_assert(BLOCK_SIZE == 256, "eight levels");
  platform::unrolled<8>([&](auto level) {
    constexpr unsigned int h = BLOCK_SIZE >> (level + 1);
    block.sync();
    block.forEachThread(Live{h}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= h)) return;
      shared.sData[thread.x] = Op::apply(shared.sData[thread.x], shared.sData[thread.x + h]);
    });
  });
  block.sync();
  return shared.sData[0];
}

/// Reduces SEGMENTS neighbouring segments of n elements, n at most MOST. The bits are those of a block for each.
///
/// In a block for n elements, lanes from n up hold the identity. With h the largest power of two below n, all that
/// happens before distance h is that each element is combined with the identity, at one distance after the other. Only
/// the first time can make a difference, to a -0. At h, lanes from n - h up find no partner but the identity.
template <unsigned int MOST, unsigned int SEGMENTS, class In, class Acc, class Transform, class Op, class Block>
GPURUNTIME_DEVICE void reduceSideBySide(const Block& block, Acc* out, const In* in, unsigned long n) {
  using Lane = LaneOf<In, Acc>;
  // Lane by lane, each of all segments.
  In elements[MOST * SEGMENTS];
  Lane lanes[MOST * SEGMENTS];
  const auto threads = block.template withShape<MOST * SEGMENTS>();
  unsigned long h = 1;
  while (2 * h < n) h *= 2;
  platform::loadRuns<SEGMENTS>(elements, in, n);
  threads.forEachThread(Live{2 * h * SEGMENTS},
                        [&](Thread thread) { lanes[thread.x] = static_cast<Lane>(Op::identity()); });
  threads.forEachThread(Live{n * SEGMENTS}, [&](Thread thread) {
    lanes[thread.x] =
        Op::apply(static_cast<Lane>(Transform::apply(elements[thread.x])), static_cast<Lane>(Op::identity()));
  });
  for (; h > 0; h /= 2) {
    threads.forEachThread(Live{h * SEGMENTS}, [&](Thread thread) {
      lanes[thread.x] = Op::apply(lanes[thread.x], lanes[thread.x + h * SEGMENTS]);
    });
  }
  threads.forEachThread(Live{SEGMENTS}, [&](Thread thread) { out[thread.x] = static_cast<Acc>(lanes[thread.x]); });
}

/// Reduces contiguous segments of L elements, a block each; the last may be shorter.
///
/// Lane t folds elements t, t + 256, t + 512, ... from left to right, or holds the identity; threadBlockReduction
/// combines the lanes.
template <unsigned int BLOCK_SIZE, class In, class Acc, class Transform, class Op>
struct SegmentedReduceKernel : BlockFunctor<BLOCK_SIZE> {
  using Block = platform::Block<BLOCK_SIZE>;
  using Storage = ReductionStorage<BLOCK_SIZE, Acc>;
  using Lane = LaneOf<In, Acc>;
  static constexpr unsigned int joined = platform::blocksAtOnce;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockAnd1DGridIterator& it, Acc* out,
                                      const In* in, unsigned long N, unsigned long L) {
    const unsigned long start = it.block * L;
    if (start >= N) return;
    if constexpr (joined > 1) {
      const unsigned long first = it.block / joined * joined;
      if (L <= BLOCK_SIZE / 2 && (first + joined) * L <= N) {
        if (it.block != first) return;  // A neighbour does this block's part.
        return reduceSideBySide<BLOCK_SIZE / 2, joined, In, Acc, Transform, Op>(block, out + first, in + start, L);
      }
    }
    GPURUNTIME_SHARED(Storage, shared);
    const In* const segment = in + start;
    const unsigned long length = minSizeT(N - start, L);
    PerThread<Lane, BLOCK_SIZE> acc;
    block.forEachThread([&](Thread thread) { acc[thread] = static_cast<Lane>(Op::identity()); });
    block.forEachThread(Live{length}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= length)) return;
      acc[thread] = static_cast<Lane>(Transform::apply(segment[thread.x]));
    });
    const auto fold = [&](Thread thread, const In& element, unsigned long = 0) {
      acc[thread] = Op::apply(acc[thread], static_cast<Lane>(Transform::apply(element)));
    };
    const unsigned long rows = length < BLOCK_SIZE ? 0 : length / BLOCK_SIZE - 1;
    reductionhelpers::foldRows<Op>(block, Live{}, segment + BLOCK_SIZE, BLOCK_SIZE, rows, acc, fold);
    const In* const tail = segment + (rows + 1) * BLOCK_SIZE;
    const unsigned long rest = length < BLOCK_SIZE ? 0 : length % BLOCK_SIZE;
    block.forEachThread(Live{rest}, [&](Thread thread) {
      if (!platform::isIdle(thread.x >= rest)) fold(thread, tail[thread.x]);
    });
    block.forEachThread([&](Thread thread) { shared.sData[thread.x] = static_cast<Acc>(acc[thread]); });
    const Acc total = threadBlockReduction<BLOCK_SIZE, Acc, Op>(block, shared);
    block.forEachThread(Live{1}, [&](Thread thread) {
      if (!platform::isIdle(thread.x >= 1)) out[it.block] = total;
    });
  }
};

/// Reduces columns, a thread each, from the first row to the last.
template <unsigned int BLOCK_SIZE, class In, class Acc, class Transform, class Op>
struct StridedReduceKernel : BlockFunctor<BLOCK_SIZE> {
  using Block = platform::Block<BLOCK_SIZE>;
  using Lane = LaneOf<In, Acc>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockAnd1DGridIterator& it, Acc* out,
                                      const In* in, unsigned long N, unsigned long L, unsigned long S) {
    reductionhelpers::StridedIdx idx;
    if (!reductionhelpers::calculateAndCheckStridedIdx(it, BLOCK_SIZE, S, L, N, idx)) return;
    const In* const columns = in + idx.inIndex;
    Acc* const results = out + idx.outIndex;
    const Live live{idx.columns};
    PerThread<Lane, BLOCK_SIZE> acc;
    block.forEachThread(live, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live.x)) return;
      acc[thread] = static_cast<Lane>(Transform::apply(columns[thread.x]));
    });
    const auto fold = [&](Thread thread, const In& element, unsigned long) {
      acc[thread] = Op::apply(acc[thread], static_cast<Lane>(Transform::apply(element)));
    };
    reductionhelpers::foldRows<Op>(block, live, columns + S, S, L - 1, acc, fold);
    block.forEachThread(live, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live.x)) return;
      results[thread.x] = static_cast<Acc>(acc[thread]);
    });
  }
};

/// Launches the kernel that the shape asks for, on blocks of 256 threads.
template <class In, class Acc, class Transform, class Op>
void reduce(CUstream_st* stream, Acc* out, const In* in, unsigned long N, unsigned long L, unsigned long S) {
  reductionhelpers::launchByShape<256, SegmentedReduceKernel<256, In, Acc, Transform, Op>,
                                  StridedReduceKernel<256, In, Acc, Transform, Op>>(stream, N, L, S, out, in, N, L);
}

/// The same for families that know segments only.
template <class In, class Acc, class Transform, class Op>
void reduceSegments(CUstream_st* stream, Acc* out, const In* in, unsigned long N, unsigned long L) {
  fixed1dblockand1dgrid::launchWithDeviceFunctor<SegmentedReduceKernel<256, In, Acc, Transform, Op>>(
      stream, 256, reductionhelpers::segmentedBlocks(N, L), out, in, N, L);
}

}  // namespace gpuruntime::reductionkernels
