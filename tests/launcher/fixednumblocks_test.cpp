#include <gpuruntime/launcher/fixednumblocks.hpp>

#include "support/devicemodel.hpp"

namespace {

struct CountThreads : gpuruntime::BlockFunctor<0> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const gpuruntime::cuda::FixedNumBlocksIterator& it,
                                      unsigned char* visits) {
    if (it.block >= it.numBlocks) return;
    const unsigned long first = it.block * block.shape().x;
    block.forEachThread([=](gpuruntime::platform::Thread thread) { ++visits[first + thread.lane]; });
  }
};

auto countThreads(unsigned long numBlocks) {
  return [=](unsigned char* visits) {
    gpuruntime::fixednumblocks::launchWithDeviceFunctor<CountThreads>(nullptr, numBlocks, visits);
  };
}

using FixedNumBlocks = DeviceModelTest;

TEST_F(FixedNumBlocks, runsEveryBlockOnceOrHandlesFailure) {
  for (const unsigned long blockX : {64, 256}) {
    useDevice(deviceWithGrid(3, 40, 1));
    model().limitKernels(blockX == 256 ? 1024 : static_cast<int>(blockX));
    for (const unsigned long numBlocks : {1, 3, 4, 7, 50}) {
      expectVisitsOnce(blockX * numBlocks, "attributes device launch ", countThreads(numBlocks));
    }
    EXPECT_EQ(launched(), Shape({3, 17, 1, blockX, 1, 1}));
  }
  EXPECT_EQ(callsOf([] { countThreads(0)(nullptr); }), "");
  expectFailuresAreHandled(5 * 256, "attributes device launch ", countThreads(5));
}

}  // namespace
