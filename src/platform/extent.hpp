/// @file
/// Shapes of grids and blocks.
#pragma once

#include <type_traits>

namespace gpuruntime::platform {

/// Extents or coordinates of a grid or a block.
struct Extent {
  unsigned int x = 1;
  unsigned int y = 1;
  unsigned int z = 1;
};

/// Upper bounds on the coordinates of threads that have work to do; see Block::forEachThread.
struct Live {
  unsigned long x = ~0UL;
  unsigned long y = ~0UL;
  unsigned long z = ~0UL;

  /// The part of `count` elements that begins at `first`.
  static constexpr unsigned long after(unsigned long first, unsigned long count) {
    return count > first ? count - first : 0;
  }
};

// True of the kernels of several steps.
template <class K, class = void>
inline constexpr bool takesSteps = false;
template <class K>
inline constexpr bool takesSteps<K, std::void_t<decltype(&K::steps)>> = true;

// Keeps an argument out of deduction, so that a launch takes its types from the kernel alone.
template <class T>
struct NonDeduced {
  using type = T;
};

}  // namespace gpuruntime::platform
