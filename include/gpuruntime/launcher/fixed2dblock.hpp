/// @file
/// Launcher of two-dimensional blocks of a given shape over a plane.
#pragma once

#include <gpuruntime/launcher/blockfunctor.hpp>
#include <gpuruntime/launcher/launchrecords.hpp>
#include <gpuruntime/launcher/stepwalk.hpp>

namespace gpuruntime {
namespace cuda {

struct Fixed2DBlockIterator {
  unsigned long blockX;  ///< Block coordinates. They may pass the plane: the functor tests element bounds.
  unsigned long blockY;
  unsigned long sizeX;  ///< The plane, in elements.
  unsigned long sizeY;
  unsigned long numBlocksX;  ///< Span of the block coordinates over all steps.
  unsigned long numBlocksY;
};

}  // namespace cuda

namespace fixed2dblockdetail {

GridBlockAndSteps chooseFixed2DBlockGrid(unsigned long sizeX, unsigned long sizeY, unsigned long blockX,
                                         unsigned long blockY);

template <class Functor, class... Args>
struct SingleStep {
  static constexpr unsigned int walkSide = Functor::walkSide;

  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    unsigned long numBlocksX, unsigned long numBlocksY, Args... args) {
    const cuda::Fixed2DBlockIterator it{block.index().x, block.index().y, sizeX, sizeY, numBlocksX, numBlocksY};
    launchdetail::applyBlock<Functor>(block, it, args...);
  }
};

template <class Functor, class... Args>
struct MultiStep {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    unsigned long numBlocksX, unsigned long numBlocksY, unsigned long strideX,
                                    unsigned long strideY, unsigned int numSteps, Args... args) {
    const launchdetail::StepWalk walk(numSteps, {numBlocksX, numBlocksY, 1}, {strideX, strideY, 0});
    for (unsigned int step = 0; step < numSteps; ++step) {
      if (step > 0) block.sync();  // The next step uses the block's shared storage again.
      const launchdetail::Distances offset = walk.offset(step);
      const cuda::Fixed2DBlockIterator it{
          block.index().x + offset.x, block.index().y + offset.y, sizeX, sizeY, numBlocksX, numBlocksY};
      launchdetail::applyBlock<Functor>(block, it, args...);
    }
  }
};

template <class... Args>
using SingleStepKernel = platform::Kernel<unsigned long, unsigned long, unsigned long, unsigned long, Args...>;
template <class... Args>
using MultiStepKernel = platform::Kernel<unsigned long, unsigned long, unsigned long, unsigned long, unsigned long,
                                         unsigned long, unsigned int, Args...>;

template <class Functor, class... Args>
SingleStepKernel<Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, unsigned long,
                            Args...>();
}

template <class Functor, class... Args>
MultiStepKernel<Args...> multiStepKernel() {
  return platform::kernelOf<MultiStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, unsigned long,
                            unsigned long, unsigned long, unsigned int, Args...>();
}

/// Starts one of the two kernels on blocks of blockX by blockY threads that cover sizeX by sizeY elements, and returns
/// at once.
///
/// A size of 0 makes no call. The kernel's limit is not asked for: the caller gives a block that it can run. Raises if
/// the device's limits can't be read; a refused launch stays silent.
template <class... Args>
void launchKernel(SingleStepKernel<Args...> singleKernel, MultiStepKernel<Args...> multiKernel, CUstream_st* stream,
                  unsigned long sizeX, unsigned long sizeY, unsigned long blockX, unsigned long blockY,
                  typename platform::NonDeduced<Args>::type... args) {
  if (sizeX == 0 || sizeY == 0) return;
  const GridBlockAndSteps shape = chooseFixed2DBlockGrid(sizeX, sizeY, blockX, blockY);
  const unsigned long numBlocksX = shape.stepsX * shape.gridX, numBlocksY = shape.stepsY * shape.gridY;
  if (shape.isSingleStep()) {
    launchdetail::start(singleKernel, shape, stream, sizeX, sizeY, numBlocksX, numBlocksY, args...);
    return;
  }
  const unsigned long strideX = shape.stepsX == 1 ? 0 : shape.gridX;
  const unsigned long strideY = shape.stepsY == 1 ? 0 : shape.gridY;
  const auto numSteps = static_cast<unsigned int>(shape.stepsX * shape.stepsY);
  launchdetail::start(multiKernel, shape, stream, sizeX, sizeY, numBlocksX, numBlocksY, strideX, strideY, numSteps,
                      args...);
}

}  // namespace fixed2dblockdetail

namespace fixed2dblock {

/// fixed2dblockdetail::launchKernel with the two kernels of a block functor.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long sizeX, unsigned long sizeY, unsigned long blockX,
                             unsigned long blockY, Args... args) {
  fixed2dblockdetail::launchKernel<Args...>(fixed2dblockdetail::singleStepKernel<Functor, Args...>(),
                                            fixed2dblockdetail::multiStepKernel<Functor, Args...>(), stream, sizeX,
                                            sizeY, blockX, blockY, args...);
}

}  // namespace fixed2dblock
}  // namespace gpuruntime
