#include <gpuruntime/launcher/elementwise3d.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::cuda::Elementwise3DIterator;
namespace detail = gpuruntime::elementwise3ddetail;

struct CountVisits {
  static GPURUNTIME_DEVICE void apply(const Elementwise3DIterator& it, unsigned char* visits, unsigned long sizeX,
                                      unsigned long sizeY, unsigned long sizeZ) {
    if (it.isOutside()) return;
    const bool isRightSize = it.sizeX == sizeX && it.sizeY == sizeY && it.sizeZ == sizeZ;
    visits[(it.z * sizeY + it.y) * sizeX + it.x] += isRightSize ? 1 : 100;
  }
};

auto countVisits(unsigned long x, unsigned long y, unsigned long z) {
  return [=](unsigned char* visits) {
    gpuruntime::elementwise3d::launchWithDeviceFunctor<CountVisits>(nullptr, x, y, z, visits, x, y, z);
  };
}

const char* const calls = "attributes attributes device launch ";

using Elementwise3D = DeviceModelTest;

TEST_F(Elementwise3D, shapesTheBlockByTheBoxAndTheLimits) {
  // Limits of the kernel and of the device along y and z, sizes; block.
  const unsigned long cases[][9] = {{1024, 1024, 64, 8, 4, 100, 8, 4, 8},   {1024, 1024, 64, 300, 5, 7, 256, 1, 1},
                                    {1024, 1024, 64, 1, 1, 1, 1, 1, 64},    {1024, 1024, 64, 4, 2, 3, 4, 2, 32},
                                    {1024, 1024, 64, 16, 99, 3, 16, 16, 1}, {1024, 8, 64, 16, 99, 3, 16, 8, 1},
                                    {1024, 1024, 2, 8, 4, 100, 8, 4, 2},    {128, 1024, 64, 8, 4, 100, 8, 4, 4},
                                    {128, 1024, 64, 16, 99, 3, 16, 8, 1},   {64, 1024, 64, 16, 5, 3, 16, 4, 1},
                                    {192, 1024, 64, 999, 3, 2, 192, 1, 1}};
  for (const auto& [limit, maxY, maxZ, x, y, z, blockX, blockY, blockZ] : cases) {
    const gpuruntime::platform::Extent block =
        detail::choose3DBlock({1024, maxY, maxZ}, {static_cast<int>(limit)}, x, y, z);
    EXPECT_EQ(Shape({block.x, block.y, block.z}), Shape({blockX, blockY, blockZ})) << x << " by " << y << " by " << z;
  }
}

TEST_F(Elementwise3D, takesStepsBeyondTheLargestGrid) {
  useDevice(deviceWithGrid(65536, 65536, 65536));
  const auto choose = detail::chooseElementwise3DGridAndBlock;
  EXPECT_EQ(shapeOf(choose({1024}, {64}, 256 * 65535UL, 65535, 65535)),
            Shape({65535, 65535, 65535, 256, 1, 1, 1, 1, 1}));
  EXPECT_EQ(shapeOf(choose({1024}, {1024}, 256 * 65536UL, 400000, 131071)),
            Shape({16384, 57143, 32768, 256, 1, 1, 4, 7, 4}));
  EXPECT_EQ(shapeOf(choose({1024}, {64}, 256, 1, 65536)), Shape({4, 1, 16384, 64, 1, 1, 1, 1, 4}));
}

TEST_F(Elementwise3D, visitsEveryElementOnce) {
  useDevice(deviceWithGrid(3, 2, 2));
  model().limitKernels(4);
  // Blocks of 4 by 1 by 1, so that up to 12 by 2 by 2 elements take one step; of several threads along y or z where the
  // box is narrow.
  for (const unsigned long x : {1, 2, 12, 13, 53}) {
    for (const unsigned long y : {1, 2, 3, 9}) {
      for (const unsigned long z : {1, 2, 3, 20}) {
        expectVisitsOnce(x * y * z, calls, countVisits(x, y, z));
        const bool takesSteps = x > 12 || (x == 12 && (y > 2 || z > 2));
        if (x < 12) continue;
        EXPECT_EQ(model().calls().back().kernel, model().calls()[takesSteps ? 1 : 0].kernel);
      }
    }
  }
  EXPECT_EQ(launched(), Shape({3, 2, 2, 4, 1, 1}));
}

TEST_F(Elementwise3D, fillsAnArrayElementByElement) {
  expectFills({{1, 1, 4200001}, {3, 5, 300001}, {17, 300001, 1}, {257, 70, 250}, {2100001, 1, 2}, {300, 7001, 2}},
              [](const Box& box, auto... args) {
                gpuruntime::elementwise3d::launchWithDeviceFunctor<Fill<Elementwise3DIterator>>(nullptr, box.x, box.y,
                                                                                                box.z, args...);
              });
}

TEST_F(Elementwise3D, handlesNoElementsAndFailures) {
  EXPECT_EQ(callsOf([] { countVisits(0, 5, 5)(nullptr); }), "");
  EXPECT_EQ(callsOf([] { countVisits(5, 0, 5)(nullptr); }), "");
  EXPECT_EQ(callsOf([] { countVisits(5, 5, 0)(nullptr); }), "");
  expectFailuresAreHandled(3000, calls, countVisits(100, 6, 5));
  useDevice(deviceWithGrid(3, 2, 2));
  expectFailuresAreHandled(3000, calls, countVisits(100, 6, 5));
}

}  // namespace
