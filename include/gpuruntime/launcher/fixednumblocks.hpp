/// @file
/// Launcher of a given number of blocks whose size follows the kernel's limit.
#pragma once

#include <gpuruntime/launcher/blockfunctor.hpp>
#include <gpuruntime/launcher/launchrecords.hpp>

namespace gpuruntime {
namespace cuda {

struct FixedNumBlocksIterator {
  unsigned long block;  ///< Flat block index. May pass `numBlocks`: the functor tests its own bound.
  unsigned long numBlocks;
};

}  // namespace cuda

namespace fixednumblocksdetail {

/// Blocks of min(256, the kernel's limit) threads.
GridAndBlock chooseFixedNumBlocksGrid(const platform::cudaFuncAttributes& attributes, unsigned long numBlocks);

template <class Functor, class... Args>
struct SingleStep {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long numBlocks, Args... args) {
    const cuda::FixedNumBlocksIterator it{launchdetail::flatBlockIndex(block), numBlocks};
    launchdetail::applyBlock<Functor>(block, it, args...);
  }
};

template <class Functor, class... Args>
platform::Kernel<unsigned long, Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, Args...>();
}

}  // namespace fixednumblocksdetail

namespace fixednumblocks {

/// Runs a block functor on `numBlocks` blocks, or a few more, and returns at once.
///
/// numBlocks = 0 makes no call. Raises if the limits of the kernel or of the device can't be read; a refused launch
/// stays silent.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long numBlocks, Args... args) {
  if (numBlocks == 0) return;
  const auto kernel = fixednumblocksdetail::singleStepKernel<Functor, Args...>();
  const GridAndBlock shape =
      fixednumblocksdetail::chooseFixedNumBlocksGrid(launchdetail::attributesOf(kernel), numBlocks);
  launchdetail::start(kernel, shape, stream, numBlocks, args...);
}

}  // namespace fixednumblocks
}  // namespace gpuruntime
