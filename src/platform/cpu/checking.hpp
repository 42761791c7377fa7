/// @file
/// The checking mode: threads of a step and blocks of a launch run in another order, and results must keep every bit.
/// A missing barrier or a dependency between blocks then shows without a GPU.
#pragma once

namespace gpuruntime::platform::checking {

#ifdef GPURUNTIME_CHECKING
inline constexpr bool enabled = true;
#else
inline constexpr bool enabled = false;
#endif

/// The order of the current seed over `count` threads or blocks: a permutation of [0, count). Seed 0 reverses, any
/// other seed shuffles. The seed is GPURUNTIME_CHECKING_SEED of the environment; no other build reads the environment.
/// The result is valid until the next call of this thread.
const unsigned int* threadOrder(unsigned long count);
const unsigned int* blockOrder(unsigned long count);

}  // namespace gpuruntime::platform::checking
