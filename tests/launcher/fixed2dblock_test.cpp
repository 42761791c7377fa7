#include <gpuruntime/launcher/fixed2dblock.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::cuda::Fixed2DBlockIterator;
using gpuruntime::platform::Live;

/// Adds 1 where the iterator holds the plane's size and the span of its blocks, else 100.
template <unsigned int X, unsigned int Y, unsigned int SIDE>
struct CountElements : gpuruntime::BlockFunctor<X, Y> {
  static constexpr unsigned int walkSide = SIDE;

  static GPURUNTIME_DEVICE void apply(const gpuruntime::platform::Block<X, Y>& block, const Fixed2DBlockIterator& it,
                                      unsigned char* visits, Fixed2DBlockIterator expected) {
    const bool isRight = it.sizeX == expected.sizeX && it.sizeY == expected.sizeY &&
                         it.numBlocksX == expected.numBlocksX && it.numBlocksY == expected.numBlocksY;
    const unsigned long left = it.blockX * block.shape().x, top = it.blockY * block.shape().y;
    const unsigned long width = Live::after(left, it.sizeX), height = Live::after(top, it.sizeY);
    block.forEachThread(Live{width, height}, [&](gpuruntime::platform::Thread thread) {
      if (gpuruntime::platform::isIdle(thread.x >= width || thread.y >= height)) return;
      visits[(top + thread.y) * it.sizeX + left + thread.x] += isRight ? 1 : 100;
    });
  }
};

template <class Functor>
auto countElements(unsigned long sizeX, unsigned long sizeY, unsigned long spanX, unsigned long spanY) {
  return [=](unsigned char* visits) {
    const Fixed2DBlockIterator expected{0, 0, sizeX, sizeY, spanX, spanY};
    gpuruntime::fixed2dblock::launchWithDeviceFunctor<Functor>(nullptr, sizeX, sizeY, 4UL, 2UL, visits, expected);
  };
}

using Fixed2DBlock = DeviceModelTest;

template <class Functor>
class Fixed2DBlockOf : public DeviceModelTest {};
using Functors = testing::Types<CountElements<4, 2, 1>, CountElements<4, 2, 2>, CountElements<0, 1, 1>>;
TYPED_TEST_SUITE(Fixed2DBlockOf, Functors);

TYPED_TEST(Fixed2DBlockOf, visitsEveryElementOnce) {
  // Blocks of 4 by 2: up to 3 by 2 of them take one step. Size, span and grid along a dimension.
  const unsigned long alongX[][3] = {{1, 1, 1}, {5, 2, 2}, {12, 3, 3}, {13, 4, 1}, {48, 12, 3}, {50, 15, 3}};
  const unsigned long alongY[][3] = {{1, 1, 1}, {4, 2, 2}, {5, 4, 1}, {13, 8, 2}, {17, 10, 2}};
  this->useDevice(this->deviceWithGrid(3, 2, 1));
  for (const auto& [sizeX, spanX, gridX] : alongX) {
    for (const auto& [sizeY, spanY, gridY] : alongY) {
      this->expectVisitsOnce(sizeX * sizeY, "device launch ", countElements<TypeParam>(sizeX, sizeY, spanX, spanY));
      EXPECT_EQ(this->launched(), Shape({gridX, gridY, 1, 4, 2, 1}));
    }
  }
}

TEST_F(Fixed2DBlock, handlesNoElementsAndFailures) {
  using Functor = CountElements<4, 2, 1>;
  EXPECT_EQ(callsOf([] { countElements<Functor>(0, 5, 1, 3)(nullptr); }), "");
  EXPECT_EQ(callsOf([] { countElements<Functor>(5, 0, 2, 1)(nullptr); }), "");
  expectFailuresAreHandled(35, "device launch ", countElements<Functor>(5, 7, 2, 4));
  useDevice(deviceWithGrid(1, 1, 1));
  expectFailuresAreHandled(35, "device launch ", countElements<Functor>(5, 7, 4, 4));
  model().limitKernels(7);
  expectVisitsNothing(35, false, countElements<Functor>(5, 7, 4, 4));
}

}  // namespace
