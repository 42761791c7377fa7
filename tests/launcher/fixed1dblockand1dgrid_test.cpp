#include <gpuruntime/launcher/fixed1dblockand1dgrid.hpp>

#include "support/devicemodel.hpp"

namespace {

struct CountThreads : gpuruntime::BlockFunctor<16> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const gpuruntime::cuda::Fixed1DBlockAnd1DGridIterator& it,
                                      unsigned char* visits, unsigned long numBlocks) {
    if (it.block >= numBlocks) return;
    const unsigned long first = it.block * blockX;
    block.forEachThread([=](gpuruntime::platform::Thread thread) { ++visits[first + thread.lane]; });
  }
};

auto countThreads(unsigned long blockSize, unsigned long numBlocks) {
  return [=](unsigned char* visits) {
    gpuruntime::fixed1dblockand1dgrid::launchWithDeviceFunctor<CountThreads>(nullptr, blockSize, numBlocks, visits,
                                                                             numBlocks);
  };
}

using Fixed1DBlockAnd1DGrid = DeviceModelTest;

TEST_F(Fixed1DBlockAnd1DGrid, runsEveryBlockOnceOrHandlesFailure) {
  using gpuruntime::fixed1dblockand1dgriddetail::chooseFixed1DBlockAnd1DGrid;
  EXPECT_EQ(shapeOf(chooseFixed1DBlockAnd1DGrid({64}, 256, 65536)), Shape({32768, 2, 1, 256, 1, 1}));
  useDevice(deviceWithGrid(3, 40, 1));
  for (const unsigned long numBlocks : {1, 3, 4, 7, 50}) {
    expectVisitsOnce(16 * numBlocks, "attributes device launch ", countThreads(16, numBlocks));
  }
  EXPECT_EQ(launched(), Shape({3, 17, 1, 16, 1, 1}));
  EXPECT_EQ(callsOf([] { countThreads(0, 5)(nullptr); }), "");
  EXPECT_EQ(callsOf([] { countThreads(16, 0)(nullptr); }), "");
  expectFailuresAreHandled(80, "attributes device launch ", countThreads(16, 5));
  model().limitKernels(15);
  expectVisitsNothing(80, false, countThreads(16, 5));
}

}  // namespace
