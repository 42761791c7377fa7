/// @file
/// Launcher of a given number of one-dimensional blocks of a given size.
#pragma once

#include <gpuruntime/launcher/blockfunctor.hpp>
#include <gpuruntime/launcher/launchrecords.hpp>

namespace gpuruntime {
namespace cuda {

struct Fixed1DBlockAnd1DGridIterator {
  unsigned long block;  ///< Flat block index. May pass the number asked for: the functor tests its own bound.
};

}  // namespace cuda

namespace fixed1dblockand1dgriddetail {

/// The attributes are not read.
GridAndBlock chooseFixed1DBlockAnd1DGrid(const platform::cudaFuncAttributes& attributes, unsigned long blockSize,
                                         unsigned long numBlocks);

template <class Functor, class... Args>
struct SingleStep {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long /*blockSize*/,
                                    unsigned long /*numBlocks*/, Args... args) {
    const cuda::Fixed1DBlockAnd1DGridIterator it{launchdetail::flatBlockIndex(block)};
    launchdetail::applyBlock<Functor>(block, it, args...);
  }
};

template <class Functor, class... Args>
platform::Kernel<unsigned long, unsigned long, Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, unsigned long, Args...>();
}

}  // namespace fixed1dblockand1dgriddetail

namespace fixed1dblockand1dgrid {

/// Runs a block functor on `numBlocks` blocks, or a few more, of `blockSize` threads, and returns at once.
///
/// A size of 0 makes no call. Raises if the limits of the kernel or of the device can't be read; a refused launch stays
/// silent.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long blockSize, unsigned long numBlocks, Args... args) {
  if (blockSize == 0 || numBlocks == 0) return;
  const auto kernel = fixed1dblockand1dgriddetail::singleStepKernel<Functor, Args...>();
  const GridAndBlock shape = fixed1dblockand1dgriddetail::chooseFixed1DBlockAnd1DGrid(
      launchdetail::attributesOf(kernel), blockSize, numBlocks);
  launchdetail::start(kernel, shape, stream, blockSize, numBlocks, args...);
}

}  // namespace fixed1dblockand1dgrid
}  // namespace gpuruntime
