#include <gpuruntime/launcher/launchrecords.hpp>

#include "support/devicemodel.hpp"

using LaunchRecords = DeviceModelTest;

TEST_F(LaunchRecords, spreadsBlocksEvenlyOverTwoDimensions) {
  const unsigned long cases[][4] = {{65536, 0, 0, 1},
                                    {65536, 65535, 65535, 1},
                                    {65536, 65536, 32768, 2},
                                    {65536, 131071, 43691, 3},
                                    {65536, 1 << 25, 65409, 513},
                                    {65534, 65534, 65534, 1},
                                    {65534, 65535, 32768, 2},
                                    {3, 4, 2, 2},
                                    {3, 7, 3, 3},
                                    {3, 10, 3, 4}};
  for (const auto& [limit, blocks, gridX, gridY] : cases) {
    useDevice(deviceWithGrid(static_cast<int>(limit), 65535, 65535));
    EXPECT_EQ(shapeOf(gpuruntime::launchdetail::splitBlocks(blocks, 96)), Shape({gridX, gridY, 1, 96, 1, 1}));
  }
}

TEST_F(LaunchRecords, roundsTwoToFourStepsToFour) {
  const unsigned long rounded[] = {0, 1, 4, 4, 4, 5, 6, 7, 8};
  for (unsigned long steps = 0; steps < 9; ++steps) {
    EXPECT_EQ(gpuruntime::launchdetail::roundSteps(steps), rounded[steps]);
  }
}
