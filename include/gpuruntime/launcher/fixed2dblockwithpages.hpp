/// @file
/// Launcher of two-dimensional blocks of a given shape over a stack of pages.
#pragma once

#include <gpuruntime/launcher/blockfunctor.hpp>
#include <gpuruntime/launcher/launchrecords.hpp>
#include <gpuruntime/launcher/stepwalk.hpp>

namespace gpuruntime {
namespace cuda {

struct Fixed2DBlockWithPagesIterator {
  unsigned long blockX;  ///< Block coordinates. They may pass the page: the functor tests element bounds.
  unsigned long blockY;
  unsigned long page;   ///< May pass `numPages` in a launch of several steps.
  unsigned long sizeX;  ///< A page, in elements.
  unsigned long sizeY;
  unsigned long numPages;
  unsigned long numBlocksX;  ///< Span of the block coordinates over all steps.
  unsigned long numBlocksY;
  unsigned long strideX;  ///< Distances between the steps of a block, in blocks and in pages; 0 for one step.
  unsigned long strideY;
  unsigned long pageStride;

  /// Elements in front of this page.
  GPURUNTIME_DEVICE unsigned long indexOfPageStart() const { return sizeX * sizeY * page; }
};

}  // namespace cuda

namespace fixed2dblockwithpagesdetail {

/// The page count takes as many steps as it needs, without the step rule.
GridBlockAndSteps chooseFixed2DBlockWithPagesGrid(unsigned long sizeX, unsigned long sizeY, unsigned long numPages,
                                                  unsigned long blockX, unsigned long blockY);

template <class Functor, class... Args>
struct SingleStep {
  static constexpr unsigned int walkSide = Functor::walkSide;

  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    unsigned long numPages, unsigned long numBlocksX, unsigned long numBlocksY,
                                    Args... args) {
    const platform::Extent index = block.index();
    const cuda::Fixed2DBlockWithPagesIterator it{index.x,    index.y,    index.z, sizeX, sizeY, numPages,
                                                 numBlocksX, numBlocksY, 0,       0,     0};
    launchdetail::applyBlock<Functor>(block, it, args...);
  }
};

/// The walk of a block over one page. The iterator is a copy, so that each page starts at the first block again.
template <class Functor, class... Args>
GPURUNTIME_DEVICE void multiStepProcessOnePage(const platform::Block<>& block, cuda::Fixed2DBlockWithPagesIterator it,
                                               unsigned int numSteps, Args... args) {
  const launchdetail::StepWalk walk(numSteps, {it.numBlocksX, it.numBlocksY, 1}, {it.strideX, it.strideY, 0});
  const unsigned long firstX = it.blockX, firstY = it.blockY;
  for (unsigned int step = 0; step < numSteps; ++step) {
    if (step > 0) block.sync();  // The next step uses the block's shared storage again.
    const launchdetail::Distances offset = walk.offset(step);
    it.blockX = firstX + offset.x;
    it.blockY = firstY + offset.y;
    launchdetail::applyBlock<Functor>(block, it, args...);
  }
}

template <class Functor, class... Args>
struct MultiStep {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long sizeX, unsigned long sizeY,
                                    unsigned long numPages, unsigned long numBlocksX, unsigned long numBlocksY,
                                    unsigned long strideX, unsigned long strideY, unsigned long pageStride,
                                    unsigned int numStepsXY, unsigned int numStepsPage, Args... args) {
    const platform::Extent index = block.index();
    cuda::Fixed2DBlockWithPagesIterator it{index.x,    index.y,    index.z, sizeX,   sizeY,     numPages,
                                           numBlocksX, numBlocksY, strideX, strideY, pageStride};
    for (unsigned int visit = 0; visit < numStepsPage && it.page < numPages; ++visit, it.page += pageStride) {
      if (visit > 0) block.sync();
      multiStepProcessOnePage<Functor>(block, it, numStepsXY, args...);
    }
  }
};

template <class... Args>
using SingleStepKernel =
    platform::Kernel<unsigned long, unsigned long, unsigned long, unsigned long, unsigned long, Args...>;
template <class... Args>
using MultiStepKernel =
    platform::Kernel<unsigned long, unsigned long, unsigned long, unsigned long, unsigned long, unsigned long,
                     unsigned long, unsigned long, unsigned int, unsigned int, Args...>;

template <class Functor, class... Args>
SingleStepKernel<Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, unsigned long,
                            unsigned long, Args...>();
}

template <class Functor, class... Args>
MultiStepKernel<Args...> multiStepKernel() {
  return platform::kernelOf<MultiStep<Functor, Args...>, unsigned long, unsigned long, unsigned long, unsigned long,
                            unsigned long, unsigned long, unsigned long, unsigned long, unsigned int, unsigned int,
                            Args...>();
}

/// Starts one of the two kernels on blocks of blockX by blockY threads that cover `numPages` pages of sizeX by sizeY
/// elements, and returns at once.
///
/// A size of 0 in x or y makes no call, and no pages make a launch that the platform refuses. The kernel's limit is not
/// asked for. Raises if the device's limits can't be read; a refused launch stays silent.
template <class... Args>
void launchKernel(SingleStepKernel<Args...> singleKernel, MultiStepKernel<Args...> multiKernel, CUstream_st* stream,
                  unsigned long sizeX, unsigned long sizeY, unsigned long numPages, unsigned long blockX,
                  unsigned long blockY, typename platform::NonDeduced<Args>::type... args) {
  if (sizeX == 0 || sizeY == 0) return;
  const GridBlockAndSteps shape = chooseFixed2DBlockWithPagesGrid(sizeX, sizeY, numPages, blockX, blockY);
  const unsigned long numBlocksX = shape.stepsX * shape.gridX, numBlocksY = shape.stepsY * shape.gridY;
  if (shape.isSingleStep()) {
    launchdetail::start(singleKernel, shape, stream, sizeX, sizeY, numPages, numBlocksX, numBlocksY, args...);
    return;
  }
  const unsigned long strideX = shape.stepsX == 1 ? 0 : shape.gridX;
  const unsigned long strideY = shape.stepsY == 1 ? 0 : shape.gridY;
  const unsigned long pageStride = shape.stepsZ == 1 ? 0 : shape.gridZ;
  launchdetail::start(multiKernel, shape, stream, sizeX, sizeY, numPages, numBlocksX, numBlocksY, strideX, strideY,
                      pageStride, static_cast<unsigned int>(shape.stepsX * shape.stepsY),
                      static_cast<unsigned int>(shape.stepsZ), args...);
}

}  // namespace fixed2dblockwithpagesdetail
}  // namespace gpuruntime
