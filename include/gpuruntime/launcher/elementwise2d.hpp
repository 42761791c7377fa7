/// @file
/// Elementwise launcher in two dimensions: one thread an element of a box, with a coordinate per dimension.
#pragma once

#include <gpuruntime/launcher/elementwisefunctor.hpp>

namespace gpuruntime {
namespace cuda {

/// Where a thread stands in a box; x is the contiguous dimension.
struct Elementwise2DIterator {
  unsigned long x;
  unsigned long y;
  unsigned long sizeX;
  unsigned long sizeY;

  /// The bound test, a functor's first act: true for a thread outside the box.
  GPURUNTIME_DEVICE bool isOutside() const { return platform::isIdle(x >= sizeX || y >= sizeY); }
};

}  // namespace cuda

namespace elementwise2ddetail {

/// A block of 256 threads shaped by the box and cut to the kernel's limit. `sizeY` does not limit its second extent.
platform::Extent choose2DBlock(const platform::cudaFuncAttributes& attributes, unsigned long sizeX,
                               unsigned long sizeY);

/// Blocks that cover the box: by the kernel without a loop where the grid fits, else by the one that takes several
/// steps, whose own limit then shapes the block.
GridBlockAndSteps chooseElementwise2DGridAndBlock(const platform::cudaFuncAttributes& single,
                                                  const platform::cudaFuncAttributes& multi, unsigned long sizeX,
                                                  unsigned long sizeY);

template <class Functor, class... Args>
GPURUNTIME_DEVICE void applyInBlock(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    launchdetail::Distances offset, launchdetail::Distances end, Args... args) {
  // In 32 bits, zero-extended.
  const unsigned int cornerX = block.index().x * block.shape().x;
  const unsigned int cornerY = block.index().y * block.shape().y;
  const launchdetail::Distances first{cornerX + offset.x, cornerY + offset.y, 0};
  const auto iteratorOf = [=](platform::Thread thread) {
    return cuda::Elementwise2DIterator{first.x + thread.x, first.y + thread.y, sizeX, sizeY};
  };
  launchdetail::applyInBox<Functor>(block, first, end, {sizeX, sizeY, 1}, iteratorOf, args...);
}

template <class Functor, class... Args>
struct SingleStep {
  static constexpr unsigned int joinedBlocks = launchdetail::joinedBlocks<Functor, Args...>;
  static constexpr unsigned int walkSide = launchdetail::walkSide<Functor>;

  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    Args... args) {
    applyInBlock<Functor>(block, sizeX, sizeY, {0, 0, 0}, {sizeX, sizeY, 1}, args...);
  }
};

template <class Functor, class... Args>
struct MultiStep {
  static constexpr unsigned int joinedBlocks = launchdetail::joinedBlocks<Functor, Args...>;
  static constexpr unsigned int walkSide = launchdetail::walkSide<Functor>;

  static GPURUNTIME_DEVICE unsigned int steps(unsigned long /*sizeX*/, unsigned long /*sizeY*/,
                                              unsigned long /*strideX*/, unsigned long /*strideY*/,
                                              unsigned int numSteps, Args...) {
    return numSteps;
  }

  static GPURUNTIME_DEVICE void runStep(const platform::Block<>& block, unsigned int step, unsigned long sizeX,
                                        unsigned long sizeY, unsigned long strideX, unsigned long strideY,
                                        unsigned int numSteps, Args... args) {
    const launchdetail::StepWalk walk(numSteps, {sizeX, sizeY, 1}, {strideX, strideY, 0});
    const launchdetail::Distances offset = walk.offset(step);
    applyInBlock<Functor>(block, sizeX, sizeY, offset, walk.end(offset), args...);
  }
};

template <class... Args>
using SingleStepKernel = platform::Kernel<unsigned long, unsigned long, Args...>;
template <class... Args>
using MultiStepKernel =
    platform::Kernel<unsigned long, unsigned long, unsigned long, unsigned long, unsigned int, Args...>;

template <class Functor, class... Args>
SingleStepKernel<Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, unsigned long, Args...>();
}

template <class Functor, class... Args>
MultiStepKernel<Args...> multiStepKernel() {
  return platform::kernelOf<MultiStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, unsigned long,
                            unsigned int, Args...>();
}

/// Starts one of the two kernels over a box of sizeX by sizeY elements on `stream`, and returns at once.
///
/// A size of 0 makes no call of any kind. Raises if the limits of a kernel or of the device can't be read; a refused
/// launch stays silent.
template <class... Args>
void launchKernel(SingleStepKernel<Args...> singleKernel, MultiStepKernel<Args...> multiKernel, CUstream_st* stream,
                  unsigned long sizeX, unsigned long sizeY, typename platform::NonDeduced<Args>::type... args) {
  if (sizeX == 0 || sizeY == 0) return;
  const platform::cudaFuncAttributes single = launchdetail::attributesOf(singleKernel);
  const platform::cudaFuncAttributes multi = launchdetail::attributesOf(multiKernel);
  const GridBlockAndSteps shape = chooseElementwise2DGridAndBlock(single, multi, sizeX, sizeY);
  if (shape.isSingleStep()) {
    launchdetail::start(singleKernel, shape, stream, sizeX, sizeY, args...);
    return;
  }
  const unsigned long strideX = shape.stepsX == 1 ? 0 : shape.blockX * shape.gridX;
  const unsigned long strideY = shape.stepsY == 1 ? 0 : shape.blockY * shape.gridY;
  const auto numSteps = static_cast<unsigned int>(shape.stepsX * shape.stepsY);
  launchdetail::start(multiKernel, shape, stream, sizeX, sizeY, strideX, strideY, numSteps, args...);
}

}  // namespace elementwise2ddetail

namespace elementwise2d {

/// Runs `Functor::apply(it, args...)` for each element of a box on `stream`, and returns at once. See
/// elementwise2ddetail::launchKernel.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long sizeX, unsigned long sizeY, Args... args) {
  elementwise2ddetail::launchKernel<Args...>(elementwise2ddetail::singleStepKernel<Functor, Args...>(),
                                             elementwise2ddetail::multiStepKernel<Functor, Args...>(), stream, sizeX,
                                             sizeY, args...);
}

}  // namespace elementwise2d
}  // namespace gpuruntime
