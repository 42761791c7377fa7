/// @file
/// What the choosers return, and how it becomes a launch.
#pragma once

#include <gpuruntime/util/device.hpp>

#include "platform/platform.hpp"

namespace gpuruntime {

/// Grid and block of a launch.
struct GridAndBlock {
  unsigned long gridX;
  unsigned long gridY;
  unsigned long gridZ;
  unsigned long blockX;
  unsigned long blockY;
  unsigned long blockZ;
};

/// Grid, block and the number of steps that each thread or block takes along a dimension. Where a launcher has two
/// dimensions, `stepsZ` is 1.
struct GridBlockAndSteps {
  unsigned long gridX;
  unsigned long gridY;
  unsigned long gridZ;
  unsigned long blockX;
  unsigned long blockY;
  unsigned long blockZ;
  unsigned long stepsX;
  unsigned long stepsY;
  unsigned long stepsZ = 1;

  /// True where every thread takes one step, so that the kernel without a loop serves.
  bool isSingleStep() const { return stepsX < 2 && stepsY < 2 && stepsZ < 2; }
};

namespace launchdetail {

/// Starts a kernel. A refused launch stays silent: its status is left for whoever next asks the platform.
template <class Shape, class... Params, class... Args>
void start(platform::Kernel<Params...> kernel, const Shape& shape, CUstream_st* stream, Args... args) {
  const platform::Extent grid{static_cast<unsigned int>(shape.gridX), static_cast<unsigned int>(shape.gridY),
                              static_cast<unsigned int>(shape.gridZ)};
  const platform::Extent block{static_cast<unsigned int>(shape.blockX), static_cast<unsigned int>(shape.blockY),
                               static_cast<unsigned int>(shape.blockZ)};
  static_cast<void>(platform::launch(kernel, grid, block, stream, args...));
}

/// Attributes of a kernel; raises if the query fails.
template <class... Params>
platform::cudaFuncAttributes attributesOf(platform::Kernel<Params...> kernel) {
  platform::cudaFuncAttributes attributes;
  util::checkAndThrow(platform::cudaFuncGetAttributes(&attributes, kernel));
  return attributes;
}

/// Threads of a block, unless the kernel or its family asks for another number.
inline constexpr unsigned long preferredBlockSize = 256;

inline unsigned long threadLimit(const platform::cudaFuncAttributes& attributes) {
  return static_cast<unsigned long>(attributes.maxThreadsPerBlock);
}

/// Flat block index of the one-dimensional launchers, in 32 bits: grid y is the slow dimension.
template <class Block>
GPURUNTIME_DEVICE unsigned int flatBlockIndex(const Block& block) {
  return block.grid().x * block.index().y + block.index().x;
}

/// A one-dimensional run of blocks on a grid whose first dimension may be too short for it: the blocks are then spread
/// evenly over two dimensions, with a few to spare.
GridAndBlock splitBlocks(unsigned long blocks, unsigned long blockSize);

/// The step rule: 2, 3 and 4 steps become 4, so that a grid just over the limit shrinks to a quarter, not to a half.
unsigned long roundSteps(unsigned long steps);

}  // namespace launchdetail
}  // namespace gpuruntime
