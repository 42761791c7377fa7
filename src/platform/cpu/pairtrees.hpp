/// @file
/// Binary trees whose levels are combined pair by pair.
#pragma once

#include "block.hpp"
#include "checking.hpp"
#include "qualifiers.hpp"

namespace gpuruntime::platform {

/// Each level stands in an array of its own, so that neighbouring pairs lie side by side, and 8 KiB of leaves are
/// worked on at once. The checking mode takes one tree at a time, as a GPU does.
template <class T, unsigned int N>
class PairTrees {
 public:
  static constexpr bool standsOnArrays = !checking::enabled;
  static constexpr unsigned int leaves = (checking::enabled ? 1 : 32 / sizeof(T)) * N;

  void useOwnLeaves() { leaves_ = nodes_; }
  void useArray(T* array) { leaves_ = array; }

  GPURUNTIME_INLINE T* level(unsigned int level) {
    return level == 0 ? leaves_ : nodes_ + (2 * leaves - (2 * leaves >> level));
  }

 private:
  T* leaves_;
  T nodes_[2 * leaves];
};

}  // namespace gpuruntime::platform
