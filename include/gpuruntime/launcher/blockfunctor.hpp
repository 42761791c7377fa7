/// @file
/// Functors of the launchers whose block is fixed by the kernel's design.
#pragma once

#include <type_traits>

#include "platform/platform.hpp"

namespace gpuruntime {

namespace launchdetail {
struct BlockFunctorTag {};
}  // namespace launchdetail

/// Base of functors whose threads cooperate: `apply(const Block& block, const Iterator& it, args...)` runs once a
/// block, as a sequence of steps, with the iterator of the block's first thread. X and Y are the shape of the block
/// that the family launches; X = 0 leaves it to the launch.
template <unsigned int X, unsigned int Y = 1>
struct BlockFunctor : launchdetail::BlockFunctorTag {
  static constexpr unsigned int blockX = X;
  static constexpr unsigned int blockY = Y;
  using Block = platform::Block<X, Y>;

  /// Blocks along each side of the squares in which a backend that runs blocks one after the other had best take them.
  static constexpr unsigned int walkSide = 1;
};

namespace launchdetail {

/// Runs a block functor on the block.
template <class Functor, class Iterator, class... Args>
GPURUNTIME_DEVICE void applyBlock(const platform::Block<>& block, const Iterator& it, Args... args) {
  static_assert(std::is_base_of_v<BlockFunctorTag, Functor>, "the functors of this launcher derive from BlockFunctor");
  Functor::apply(block.template withShape<Functor::blockX, Functor::blockY>(), it, args...);
}

}  // namespace launchdetail
}  // namespace gpuruntime
