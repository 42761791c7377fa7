#include <gpuruntime/launcher/elementwise2d.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::cuda::Elementwise2DIterator;
namespace detail = gpuruntime::elementwise2ddetail;

struct CountVisits {
  static GPURUNTIME_DEVICE void apply(const Elementwise2DIterator& it, unsigned char* visits, unsigned long sizeX,
                                      unsigned long sizeY) {
    if (it.isOutside()) return;
    visits[it.y * sizeX + it.x] += it.sizeX == sizeX && it.sizeY == sizeY ? 1 : 100;
  }
};

const auto singleStep = detail::singleStepKernel<CountVisits, unsigned char*, unsigned long, unsigned long>();
const auto multiStep = detail::multiStepKernel<CountVisits, unsigned char*, unsigned long, unsigned long>();

auto countVisits(unsigned long sizeX, unsigned long sizeY) {
  return [=](unsigned char* visits) {
    detail::launchKernel(singleStep, multiStep, nullptr, sizeX, sizeY, visits, sizeX, sizeY);
  };
}

const char* const calls = "attributes attributes device launch ";

using Elementwise2D = DeviceModelTest;

TEST_F(Elementwise2D, shapesTheBlockByTheBoxAndTheKernelsLimit) {
  const unsigned long cases[][5] = {{1024, 300, 5, 256, 1},  {1024, 256, 9, 256, 1}, {1024, 255, 9, 255, 1},
                                    {1024, 16, 100, 16, 16}, {1024, 1, 1, 1, 256},   {1024, 4, 2, 4, 64},
                                    {128, 16, 100, 16, 8},   {128, 1000, 3, 128, 1}, {64, 100, 3, 64, 1},
                                    {192, 100, 3, 100, 1}};
  for (const auto& [limit, sizeX, sizeY, blockX, blockY] : cases) {
    const gpuruntime::platform::Extent block = detail::choose2DBlock({static_cast<int>(limit)}, sizeX, sizeY);
    EXPECT_EQ(Shape({block.x, block.y, block.z}), Shape({blockX, blockY, 1})) << sizeX << " by " << sizeY;
  }
}

TEST_F(Elementwise2D, takesStepsBeyondTheLargestGrid) {
  // Sizes, x in blocks; grid and steps.
  const unsigned long cases[][6] = {{65535, 65535, 65535, 65535, 1, 1},
                                    {65536, 3, 16384, 3, 4, 1},
                                    {1, 131071, 1, 32768, 1, 4},
                                    {400000, 262141, 57143, 52429, 7, 5}};
  for (const auto& [blocks, sizeY, gridX, gridY, stepsX, stepsY] : cases) {
    EXPECT_EQ(shapeOf(detail::chooseElementwise2DGridAndBlock({1024}, {1024}, 256 * blocks, sizeY)),
              Shape({gridX, gridY, 1, 256, 1, 1, stepsX, stepsY, 1}));
  }
}

TEST_F(Elementwise2D, visitsEveryElementOnce) {
  useDevice(deviceWithGrid(3, 2, 1));
  model().limitKernel(singleStep.identity(), 8);
  model().limitKernel(multiStep.identity(), 4);
  const unsigned long cases[][7] = {// Sizes, 0 for the kernel of one step and 1 for the other; grid and block.
                                    {1, 1, 0, 1, 1, 1, 8},  {24, 2, 0, 3, 2, 8, 1},  {24, 3, 1, 2, 1, 4, 1},
                                    {25, 2, 1, 2, 2, 4, 1}, {24, 9, 1, 2, 2, 4, 1},  {53, 1, 1, 3, 1, 4, 1},
                                    {53, 5, 1, 3, 2, 4, 1}, {61, 20, 1, 3, 2, 4, 1}, {3, 50, 1, 1, 2, 3, 1},
                                    {1, 50, 1, 1, 2, 1, 4}};
  for (const auto& [sizeX, sizeY, kernel, gridX, gridY, blockX, blockY] : cases) {
    expectVisitsOnce(sizeX * sizeY, calls, countVisits(sizeX, sizeY));
    EXPECT_EQ(launched(), Shape({gridX, gridY, 1, blockX, blockY, 1})) << sizeX << " by " << sizeY;
    EXPECT_EQ(model().calls().back().kernel, model().calls()[kernel].kernel);
  }
}

TEST_F(Elementwise2D, fillsAnArrayElementByElement) {
  expectFills({{1, 4200001, 1}, {7, 600001, 1}, {40, 70001, 1}, {257, 16500, 1}, {4200001, 1, 1}, {1100001, 4, 1}},
              [](const Box& box, auto... args) {
                gpuruntime::elementwise2d::launchWithDeviceFunctor<Fill<Elementwise2DIterator>>(nullptr, box.x, box.y,
                                                                                                args...);
              });
}

TEST_F(Elementwise2D, handlesNoElementsAndFailures) {
  EXPECT_EQ(callsOf([] { countVisits(0, 5)(nullptr); }), "");
  EXPECT_EQ(callsOf([] { countVisits(5, 0)(nullptr); }), "");
  expectFailuresAreHandled(3000, calls, countVisits(300, 10));
  useDevice(deviceWithGrid(3, 2, 1));
  expectFailuresAreHandled(3000, calls, countVisits(300, 10));
  model().devices[0].maxThreadsDim[1] = 63;
  expectVisitsNothing(8, false, countVisits(4, 2));
}

}  // namespace
