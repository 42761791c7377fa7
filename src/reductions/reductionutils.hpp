/// @file
/// How the reductions and scans of one dimension divide their arrays among blocks.
///
/// An array of N elements is folded into `outer` groups of L rows of S elements: element (i, r, o), 0 <= i < S,
/// 0 <= r < L, stands at i + r * S + o * S * L. The rows are reduced, so that a group has S columns. S = 1 makes of
/// each group one contiguous segment; there the last may be shorter than L. For S > 1 what is left behind the last
/// whole group is not looked at. S and L are at least 1, unchecked.
#pragma once

#include <gpuruntime/launcher/fixed1dblockand1dgrid.hpp>

#include <type_traits>

#include "gpucommon/CUDATypes.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime::reductionhelpers {

/// Blocks of a segmented kernel: one a segment; one, too, for an empty array, which finds nothing to do.
inline unsigned long segmentedBlocks(unsigned long N, unsigned long L) {
  return N == 0 ? 1 : (N - 1) / L + 1;
}

/// Blocks of a strided kernel: one for each `blockSize` columns of a group, or a part of them.
inline unsigned long stridedBlocks(unsigned long blockSize, unsigned long N, unsigned long L, unsigned long S) {
  return ((S - 1) / blockSize + 1) * (N / (S * L));
}

/// Launches `Segmented` with `args` for S = 1, and `Strided` with `args` and S for any other S, on blocks of BLOCK_SIZE
/// threads.
template <unsigned int BLOCK_SIZE, class Segmented, class Strided, class... Args>
void launchByShape(CUstream_st* stream, unsigned long N, unsigned long L, unsigned long S, Args... args) {
  using fixed1dblockand1dgrid::launchWithDeviceFunctor;
  if (S == 1) {
    launchWithDeviceFunctor<Segmented>(stream, BLOCK_SIZE, segmentedBlocks(N, L), args...);
  } else {
    launchWithDeviceFunctor<Strided>(stream, BLOCK_SIZE, stridedBlocks(BLOCK_SIZE, N, L, S), args..., S);
  }
}

/// Where the columns of a strided kernel's block lie: thread t has column t, if t < columns.
struct StridedIdx {
  unsigned long inIndex;   ///< Row 0 of the first column; row r stands r * S further on.
  unsigned long outIndex;  ///< The first column's result.
  unsigned long group;
  unsigned long columns;  ///< Columns from the first one to the end of the group; may exceed the block.
};

/// Finds the columns of a block of `blockSize` threads; false if it is one of the launcher's surplus blocks.
GPURUNTIME_DEVICE bool calculateAndCheckStridedIdx(const cuda::Fixed1DBlockAnd1DGridIterator& it,
                                                   unsigned long blockSize, unsigned long S, unsigned long L,
                                                   unsigned long N, StridedIdx& idx) {
  const unsigned long blocksPerGroup = gpucommon::hostDeviceMath::ceiledIntegerDivision(S, blockSize);
  const unsigned long groupElements = S * L;
  if (it.block >= N / groupElements * blocksPerGroup) return false;
  idx.group = it.block / blocksPerGroup;
  const unsigned long column = (it.block - idx.group * blocksPerGroup) * blockSize;
  idx.inIndex = column + idx.group * groupElements;
  idx.outIndex = column + idx.group * S;
  idx.columns = S - column;
  return true;
}

/// What a lane carries along: the accumulator, or, for a logical one, a word as wide as the parts of an element, so
/// that a loop over lanes deals with one width only.
template <class In, class Acc>
using LaneOf =
    std::conditional_t<std::is_same_v<Acc, bool> && !std::is_same_v<In, bool>, gpucommon::StorageOf<RealOf<In>>, Acc>;

template <class Op, class = void>
inline constexpr bool hasContenders = false;
template <class Op>
inline constexpr bool hasContenders<Op, std::enable_if_t<Op::hasContenders>> = true;

/// Runs `fold(thread, element, row)` down the rows, as `forEachRow` does. Of an operator with a cheap test for elements
/// that change nothing, `best`, what a lane carries along, is held against each row first: in an array without a trend
/// few rows change it.
template <class Op, class Block, class T, class Lanes, class Fold>
GPURUNTIME_DEVICE void foldRows(const Block& block, platform::Live live, const T* in, unsigned long pitch,
                                unsigned long rows, Lanes& best, Fold fold) {
  if constexpr (hasContenders<Op>) {
    using Contender = typename Op::Contender;
    platform::PerThread<RealOf<T>, 256> bound;
    const auto setBound = [&](platform::Thread thread) { bound[thread] = Contender::boundOf(best[thread]); };
    block.forEachThread(live, setBound);
    for (unsigned long row = 0; row < rows; ++row, in += pitch) {
      const bool changes = block.findsAny(live, [&](platform::Thread thread) {
        return !platform::isIdle(thread.x >= live.x) && Contender::mayBeat(in[thread.x], best[thread], bound[thread]);
      });
      if (!changes) continue;
      block.forEachThread(live, [&](platform::Thread thread) {
        if (platform::isIdle(thread.x >= live.x)) return;
        fold(thread, in[thread.x], row);
        setBound(thread);
      });
    }
  } else {
    block.forEachRow(live, in, pitch, rows, fold);
  }
}

/// What a lane begins with: the transformed element, or the operator's identity where the segment has none.
template <class In, class Acc, class Transform, class Op>
GPURUNTIME_DEVICE Acc getStartingValue(const In* in, unsigned long index, unsigned long end) {
  return index < end ? static_cast<Acc>(Transform::apply(in[index])) : static_cast<Acc>(Op::identity());
}

}  // namespace gpuruntime::reductionhelpers
