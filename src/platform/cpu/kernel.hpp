/// @file
/// Kernels and their launch: a kernel is a function that runs a run of blocks one after the other.
#pragma once

#include "../extent.hpp"
#include "block.hpp"
#include "executor.hpp"
#include "qualifiers.hpp"
#include "runtime.hpp"
#include "streaming.hpp"

#include <type_traits>

namespace gpuruntime::platform {

/// Handle of a kernel; the address is the kernel's identity.
template <class... Args>
struct Kernel {
  void (*runBlocks)(Extent grid, Extent shape, BlockRange blocks, Args... args);
  unsigned int joinedBlocks = 1;

  const void* identity() const { return reinterpret_cast<const void*>(runBlocks); }
};

namespace detail {

/// Walks the blocks of a grid, x fastest, in bands: SIDE = 1 row by row; a larger SIDE in squares of SIDE by SIDE
/// blocks, so that blocks which run one after the other touch neighbouring memory in both dimensions.
template <unsigned int SIDE>
class BlockWalk {
 public:
  BlockWalk(Extent grid, unsigned long first) : grid_(grid) {
    const unsigned long page = static_cast<unsigned long>(grid.x) * grid.y;
    index_.z = static_cast<unsigned int>(first / page);
    const unsigned long inPage = first % page;
    top_ = static_cast<unsigned int>(inPage / (static_cast<unsigned long>(grid.x) * SIDE)) * SIDE;
    const unsigned int height = bottom() - top_;
    const unsigned long inBand = inPage - static_cast<unsigned long>(grid.x) * top_;
    left_ = static_cast<unsigned int>(inBand / (SIDE * height)) * SIDE;
    const unsigned long inSquare = inBand - static_cast<unsigned long>(left_) * height;
    const unsigned int width = right() - left_;
    index_.x = left_ + static_cast<unsigned int>(inSquare % width);
    index_.y = top_ + static_cast<unsigned int>(inSquare / width);
  }

  Extent index() const { return index_; }

  void advance() {
    if (++index_.x < right()) return;
    index_.x = left_;
    if (++index_.y < bottom()) return;
    left_ = right();
    if (left_ == grid_.x) {
      left_ = 0;
      top_ = bottom();
      if (top_ == grid_.y) {
        top_ = 0;
        ++index_.z;
      }
    }
    index_.x = left_;
    index_.y = top_;
  }

 private:
  // Along x a band of single rows is one long square.
  unsigned int right() const { return SIDE == 1 || grid_.x - left_ < SIDE ? grid_.x : left_ + SIDE; }
  unsigned int bottom() const { return grid_.y - top_ < SIDE ? grid_.y : top_ + SIDE; }

  Extent grid_;
  Extent index_;
  unsigned int left_;
  unsigned int top_;
};

template <class K, class = void>
inline constexpr unsigned int walkSide = 1;
template <class K>
inline constexpr unsigned int walkSide<K, std::void_t<decltype(K::walkSide)>> = K::walkSide;

template <class K, class = void>
inline constexpr unsigned int joinedBlocks = 1;
template <class K>
inline constexpr unsigned int joinedBlocks<K, std::void_t<decltype(K::joinedBlocks)>> =
    checking::enabled ? 1 : K::joinedBlocks;

/// Makes one block of up to so many neighbours: along x; of whole rows of blocks, along y; of whole pages, along z.
inline void joinBlocks(Extent& grid, Extent& shape, unsigned int blocks) {
  const auto join = [&](unsigned int& count, unsigned int& extent) {
    const unsigned int together = count < blocks ? count : blocks;
    extent *= together;
    count = (count - 1) / together + 1;
    blocks = count == 1 ? blocks / together : 1;
  };
  join(grid.x, shape.x);
  join(grid.y, shape.y);
  join(grid.z, shape.z);
}

// Everything a kernel calls is inlined here, or its thread loops could not be vectorised.
template <class K, class... Args>
__attribute__((flatten)) void runBlocks(Extent grid, Extent shape, BlockRange blocks, Args... args) {
  JoinedLines joinedLines;
  unsigned int steps = 1;
  if constexpr (takesSteps<K>) steps = K::steps(args...);
  // All blocks take a step before any takes the next: in it, neighbours touch neighbouring memory.
  for (unsigned int step = 0; step < steps; ++step) {
    BlockWalk<walkSide<K>> walk(grid, blocks.first);
    for (unsigned long number = blocks.first; number < blocks.last; ++number, walk.advance()) {
      const Block<> block(walk.index(), grid, shape, &joinedLines);
      if constexpr (takesSteps<K>) {
        K::runStep(block, step, args...);
      } else {
        K::run(block, args...);
      }
    }
  }
  joinedLines.finish();
  finishStreaming();
}

}  // namespace detail

template <class K, class... Args>
Kernel<Args...> kernelOf() {
  return {&detail::runBlocks<K, Args...>, detail::joinedBlocks<K>};
}

template <class... Args>
cudaError cudaFuncGetAttributes(cudaFuncAttributes* attributes, Kernel<Args...> kernel) {
  return detail::functionAttributes(attributes, kernel.identity());
}

template <class... Args>
cudaError launch(Kernel<Args...> kernel, Extent grid, Extent shape, CUstream_st* stream,
                 typename NonDeduced<Args>::type... args) {
  const cudaError status = detail::beginLaunch(kernel.identity(), grid, shape, stream);
  if (status != cudaSuccess) return status;
  if (kernel.joinedBlocks > 1) detail::joinBlocks(grid, shape, kernel.joinedBlocks);
  auto body = [=](BlockRange blocks) { kernel.runBlocks(grid, shape, blocks, args...); };
  executeBlocks(static_cast<unsigned long>(grid.x) * grid.y * grid.z, body);
  return cudaSuccess;
}

}  // namespace gpuruntime::platform
