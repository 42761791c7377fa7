#include <gpuruntime/launcher/fixed2dblockwithpages.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::cuda::Fixed2DBlockWithPagesIterator;
using gpuruntime::platform::Live;
namespace detail = gpuruntime::fixed2dblockwithpagesdetail;

/// A size, the span of the blocks or pages that cover it and the distance of their steps.
struct Extents {
  unsigned long size, span, stride;
};

/// Adds 1 where the iterator is as expected, else 100. A page beyond the last counts in front of the array.
template <unsigned int SIDE>
struct CountElements : gpuruntime::BlockFunctor<4, 2> {
  static constexpr unsigned int walkSide = SIDE;

  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed2DBlockWithPagesIterator& it,
                                      unsigned char* visits, Extents x, Extents y, Extents pages) {
    if (it.page >= pages.size) {
      ++visits[-1];
      return;
    }
    const bool isRight = it.sizeX == x.size && it.sizeY == y.size && it.numPages == pages.size &&
                         it.numBlocksX == x.span && it.numBlocksY == y.span && it.strideX == x.stride &&
                         it.strideY == y.stride && it.pageStride == pages.stride;
    const unsigned long left = it.blockX * blockX, top = it.blockY * blockY;
    const unsigned long width = Live::after(left, it.sizeX), height = Live::after(top, it.sizeY);
    block.forEachThread(Live{width, height}, [&](gpuruntime::platform::Thread thread) {
      if (gpuruntime::platform::isIdle(thread.x >= width || thread.y >= height)) return;
      visits[it.indexOfPageStart() + (top + thread.y) * it.sizeX + left + thread.x] += isRight ? 1 : 100;
    });
  }
};

template <unsigned int SIDE = 1>
auto countElements(Extents x, Extents y, Extents pages) {
  using Functor = CountElements<SIDE>;
  return [=](unsigned char* visits) {
    detail::launchKernel(detail::singleStepKernel<Functor, unsigned char*, Extents, Extents, Extents>(),
                         detail::multiStepKernel<Functor, unsigned char*, Extents, Extents, Extents>(), nullptr, x.size,
                         y.size, pages.size, 4, 2, visits, x, y, pages);
  };
}

using Fixed2DBlockWithPages = DeviceModelTest;

TEST_F(Fixed2DBlockWithPages, visitsEveryElementOnce) {
  useDevice(deviceWithGrid(3, 2, 2));
  // Blocks of 4 by 2: up to 3 by 2 of them and 2 pages take one step.
  const auto grid = [](const Extents& extents) { return extents.stride == 0 ? extents.span : extents.stride; };
  for (const Extents& x : {Extents{4, 1, 0}, Extents{11, 3, 0}, Extents{13, 4, 1}, Extents{50, 15, 3}}) {
    for (const Extents& y : {Extents{1, 1, 0}, Extents{4, 2, 0}, Extents{5, 4, 1}, Extents{17, 10, 2}}) {
      for (const Extents& pages : {Extents{1, 1, 0}, Extents{2, 2, 0}, Extents{3, 4, 2}, Extents{5, 6, 2}}) {
        expectVisitsOnce(x.size * y.size * pages.size, "device launch ", countElements(x, y, pages));
        EXPECT_EQ(launched(), Shape({grid(x), grid(y), grid(pages), 4, 2, 1}));
      }
    }
  }
  useDevice(deviceWithGrid(13, 9, 5));
  expectVisitsOnce(50 * 17 * 5, "device launch ", countElements<2>({50, 13, 0}, {17, 9, 0}, {5, 5, 0}));
}

TEST_F(Fixed2DBlockWithPages, handlesNoElementsAndFailures) {
  EXPECT_EQ(callsOf([] { countElements({0, 1, 0}, {5, 3, 0}, {2, 2, 0})(nullptr); }), "");
  EXPECT_EQ(callsOf([] { countElements({5, 2, 0}, {0, 1, 0}, {2, 2, 0})(nullptr); }), "");
  expectVisitsNothing(35, false, countElements({5, 2, 0}, {7, 4, 0}, {0, 0, 0}));
  expectFailuresAreHandled(70, "device launch ", countElements({5, 2, 0}, {7, 4, 0}, {2, 2, 0}));
  model().limitKernels(7);
  expectVisitsNothing(70, false, countElements({5, 2, 0}, {7, 4, 0}, {2, 2, 0}));
}

}  // namespace
