/// @file
/// Elementwise launcher in three dimensions.
///
/// Both backends have grids of three dimensions, so there is no launch that flattens the third.
#pragma once

#include <gpuruntime/launcher/elementwisefunctor.hpp>

namespace gpuruntime {
namespace cuda {

/// Where a thread stands in a box; x is the contiguous dimension.
struct Elementwise3DIterator {
  unsigned long x;
  unsigned long y;
  unsigned long z;
  unsigned long sizeX;
  unsigned long sizeY;
  unsigned long sizeZ;

  /// The bound test, a functor's first act: true for a thread outside the box.
  GPURUNTIME_DEVICE bool isOutside() const { return platform::isIdle(x >= sizeX || y >= sizeY || z >= sizeZ); }
};

}  // namespace cuda

namespace elementwise3ddetail {

/// A block of 256 threads shaped by the box and cut to the kernel's limit. `maxThreadsDim` are the device's limits on
/// the extents of a block. `sizeZ` does not limit its third extent.
platform::Extent choose3DBlock(const boost::array<unsigned long, 3>& maxThreadsDim,
                               const platform::cudaFuncAttributes& attributes, unsigned long sizeX, unsigned long sizeY,
                               unsigned long sizeZ);

/// Blocks that cover the box, as in two dimensions.
GridBlockAndSteps chooseElementwise3DGridAndBlock(const platform::cudaFuncAttributes& single,
                                                  const platform::cudaFuncAttributes& multi, unsigned long sizeX,
                                                  unsigned long sizeY, unsigned long sizeZ);

template <class Functor, class... Args>
GPURUNTIME_DEVICE void applyInBlock(const platform::Block<>& block, launchdetail::Distances size,
                                    launchdetail::Distances offset, launchdetail::Distances end, Args... args) {
  // In 32 bits, zero-extended.
  const unsigned int cornerX = block.index().x * block.shape().x;
  const unsigned int cornerY = block.index().y * block.shape().y;
  const unsigned int cornerZ = block.index().z * block.shape().z;
  const launchdetail::Distances first{cornerX + offset.x, cornerY + offset.y, cornerZ + offset.z};
  const auto iteratorOf = [=](platform::Thread thread) {
    return cuda::Elementwise3DIterator{
        first.x + thread.x, first.y + thread.y, first.z + thread.z, size.x, size.y, size.z};
  };
  launchdetail::applyInBox<Functor>(block, first, end, size, iteratorOf, args...);
}

template <class Functor, class... Args>
struct SingleStep {
  static constexpr unsigned int joinedBlocks = launchdetail::joinedBlocks<Functor, Args...>;
  static constexpr unsigned int walkSide = launchdetail::walkSide<Functor>;

  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    unsigned long sizeZ, Args... args) {
    const launchdetail::Distances size{sizeX, sizeY, sizeZ};
    applyInBlock<Functor>(block, size, {0, 0, 0}, size, args...);
  }
};

template <class Functor, class... Args>
struct MultiStep {
  static constexpr unsigned int joinedBlocks = launchdetail::joinedBlocks<Functor, Args...>;
  static constexpr unsigned int walkSide = launchdetail::walkSide<Functor>;

  static GPURUNTIME_DEVICE unsigned int steps(unsigned long /*sizeX*/, unsigned long /*sizeY*/, unsigned long /*sizeZ*/,
                                              unsigned long /*strideX*/, unsigned long /*strideY*/,
                                              unsigned long /*strideZ*/, unsigned int numSteps, Args...) {
    return numSteps;
  }

  static GPURUNTIME_DEVICE void runStep(const platform::Block<>& block, unsigned int step, unsigned long sizeX,
                                        unsigned long sizeY, unsigned long sizeZ, unsigned long strideX,
                                        unsigned long strideY, unsigned long strideZ, unsigned int numSteps,
                                        Args... args) {
    const launchdetail::Distances size{sizeX, sizeY, sizeZ};
    const launchdetail::StepWalk walk(numSteps, size, {strideX, strideY, strideZ});
    const launchdetail::Distances offset = walk.offset(step);
    applyInBlock<Functor>(block, size, offset, walk.end(offset), args...);
  }
};

template <class... Args>
using SingleStepKernel = platform::Kernel<unsigned long, unsigned long, unsigned long, Args...>;
template <class... Args>
using MultiStepKernel = platform::Kernel<unsigned long, unsigned long, unsigned long, unsigned long, unsigned long,
                                         unsigned long, unsigned int, Args...>;

template <class Functor, class... Args>
SingleStepKernel<Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, Args...>();
}

template <class Functor, class... Args>
MultiStepKernel<Args...> multiStepKernel() {
  return platform::kernelOf<MultiStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, unsigned long,
                            unsigned long, unsigned long, unsigned int, Args...>();
}

/// Starts one of the two kernels over a box on `stream`, and returns at once.
///
/// A size of 0 makes no call of any kind. Raises if the limits of a kernel or of the device can't be read; a refused
/// launch stays silent.
template <class... Args>
void launchKernel3DGrid(SingleStepKernel<Args...> singleKernel, MultiStepKernel<Args...> multiKernel,
                        CUstream_st* stream, unsigned long sizeX, unsigned long sizeY, unsigned long sizeZ,
                        typename platform::NonDeduced<Args>::type... args) {
  if (sizeX == 0 || sizeY == 0 || sizeZ == 0) return;
  const platform::cudaFuncAttributes single = launchdetail::attributesOf(singleKernel);
  const platform::cudaFuncAttributes multi = launchdetail::attributesOf(multiKernel);
  const GridBlockAndSteps shape = chooseElementwise3DGridAndBlock(single, multi, sizeX, sizeY, sizeZ);
  if (shape.isSingleStep()) {
    launchdetail::start(singleKernel, shape, stream, sizeX, sizeY, sizeZ, args...);
    return;
  }
  const unsigned long strideX = shape.stepsX == 1 ? 0 : shape.blockX * shape.gridX;
  const unsigned long strideY = shape.stepsY == 1 ? 0 : shape.blockY * shape.gridY;
  const unsigned long strideZ = shape.stepsZ == 1 ? 0 : shape.blockZ * shape.gridZ;
  const auto numSteps = static_cast<unsigned int>(shape.stepsX * shape.stepsY * shape.stepsZ);
  launchdetail::start(multiKernel, shape, stream, sizeX, sizeY, sizeZ, strideX, strideY, strideZ, numSteps, args...);
}

}  // namespace elementwise3ddetail

namespace elementwise3d {

/// Runs `Functor::apply(it, args...)` for each element of a box on `stream`, and returns at once. See
/// elementwise3ddetail::launchKernel3DGrid.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long sizeX, unsigned long sizeY, unsigned long sizeZ,
                             Args... args) {
  elementwise3ddetail::launchKernel3DGrid<Args...>(elementwise3ddetail::singleStepKernel<Functor, Args...>(),
                                                   elementwise3ddetail::multiStepKernel<Functor, Args...>(), stream,
                                                   sizeX, sizeY, sizeZ, args...);
}

}  // namespace elementwise3d
}  // namespace gpuruntime
