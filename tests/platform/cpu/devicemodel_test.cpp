#include "platform/cpu/devicemodel.hpp"

#include "platform/platform.hpp"
#include "support/devicemodel.hpp"

namespace {

using namespace gpuruntime::platform;

struct Mark {
  static void run(const Block<>&, bool* hasRun) { *hasRun = true; }
};

TEST_F(DeviceModelTest, refusesGridsAndBlocksBeyondItsLimits) {
  useDevice({64, {32, 16, 8}, {4, 3, 2}, 1, 9, 0});
  const unsigned int cases[][7] = {{4, 3, 2, 32, 2, 1, 1}, {1, 1, 1, 1, 16, 4, 1}, {1, 1, 1, 1, 1, 8, 1},
                                   {5, 1, 1, 1, 1, 1, 0},  {1, 4, 1, 1, 1, 1, 0},  {1, 1, 3, 1, 1, 1, 0},
                                   {0, 1, 1, 1, 1, 1, 0},  {1, 1, 1, 33, 1, 1, 0}, {1, 1, 1, 1, 17, 1, 0},
                                   {1, 1, 1, 1, 1, 9, 0},  {1, 1, 1, 13, 5, 1, 0}, {1, 1, 1, 1, 0, 1, 0}};
  for (const auto& [gridX, gridY, gridZ, blockX, blockY, blockZ, isAccepted] : cases) {
    bool hasRun = false;
    const cudaError status =
        launch(kernelOf<Mark, bool*>(), {gridX, gridY, gridZ}, {blockX, blockY, blockZ}, nullptr, &hasRun);
    EXPECT_EQ(status, isAccepted ? cudaSuccess : cudaErrorInvalidConfiguration);
    EXPECT_EQ(hasRun, isAccepted != 0);
  }
}

}  // namespace
