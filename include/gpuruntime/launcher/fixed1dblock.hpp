/// @file
/// Launcher of one-dimensional blocks of a given size, as many as a number of threads needs.
#pragma once

#include <gpuruntime/launcher/blockfunctor.hpp>
#include <gpuruntime/launcher/launchrecords.hpp>

namespace gpuruntime {
namespace cuda {

struct Fixed1DBlockIterator {
  unsigned long thread;  ///< Global thread index, in 64 bits; of the block's first thread for a block functor.
  unsigned long block;   ///< Flat block index.
  unsigned long count;   ///< Number of threads asked for.

  /// The bound test of a functor whose threads do not cooperate.
  GPURUNTIME_DEVICE bool isOutside() const { return platform::isIdle(thread >= count); }
};

}  // namespace cuda

namespace fixed1dblockdetail {

GridAndBlock chooseFixed1DBlockGrid(unsigned long n, unsigned long blockSize);

template <class Functor, class... Args>
struct SingleStep {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long n, Args... args) {
    const unsigned long flat = launchdetail::flatBlockIndex(block);
    const unsigned long first = flat * block.shape().x;
    if constexpr (std::is_base_of_v<launchdetail::BlockFunctorTag, Functor>) {
      // The grid may hold a few more blocks than asked for.
      if (first < n) launchdetail::applyBlock<Functor>(block, cuda::Fixed1DBlockIterator{first, flat, n}, args...);
    } else {
      block.forEachThread(platform::Live{platform::Live::after(first, n)}, [=](platform::Thread thread) {
        Functor::apply(cuda::Fixed1DBlockIterator{first + thread.x, flat, n}, args...);
      });
    }
  }
};

template <class Functor, class... Args>
platform::Kernel<unsigned long, Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, Args...>();
}

}  // namespace fixed1dblockdetail

namespace fixed1dblock {

/// Runs the functor on blocks of `blockSize` threads, `n` threads or a few more in all, and returns at once.
///
/// n = 0 makes no call. The kernel's limit is not asked for: the caller gives a block that it can run. Raises if the
/// device's limits can't be read; a refused launch stays silent.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long n, unsigned long blockSize, Args... args) {
  if (n == 0) return;
  const GridAndBlock shape = fixed1dblockdetail::chooseFixed1DBlockGrid(n, blockSize);
  launchdetail::start(fixed1dblockdetail::singleStepKernel<Functor, Args...>(), shape, stream, n, args...);
}

}  // namespace fixed1dblock
}  // namespace gpuruntime
