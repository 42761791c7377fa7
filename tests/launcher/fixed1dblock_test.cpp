#include <gpuruntime/launcher/fixed1dblock.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::cuda::Fixed1DBlockIterator;
using gpuruntime::fixed1dblock::launchWithDeviceFunctor;
using gpuruntime::platform::Live;
using gpuruntime::platform::Thread;

struct CountThreads {
  static GPURUNTIME_DEVICE void apply(const Fixed1DBlockIterator& it, unsigned char* visits, unsigned long count) {
    if (it.isOutside()) return;
    visits[it.thread] += it.count == count && it.block == it.thread / 8 ? 1 : 100;
  }
};

template <unsigned int X>
struct CountThreadsOfBlocks : gpuruntime::BlockFunctor<X> {
  static GPURUNTIME_DEVICE void apply(const gpuruntime::platform::Block<X>& block, const Fixed1DBlockIterator& it,
                                      unsigned char* visits, unsigned long count) {
    const unsigned long live = Live::after(it.thread, it.count);
    const bool isRight = it.count == count && it.thread == it.block * 8;
    block.forEachThread(Live{live}, [&](Thread thread) {
      if (gpuruntime::platform::isIdle(thread.x >= live)) return;
      visits[it.thread + thread.lane] += isRight ? 1 : 100;
    });
  }
};

struct CountLateBlocks : gpuruntime::BlockFunctor<1024> {
  static GPURUNTIME_DEVICE void apply(const Block&, const Fixed1DBlockIterator& it, unsigned char* visits,
                                      unsigned long first) {
    if (it.thread >= first) ++visits[(it.thread - first) / 1024];
  }
};

using Fixed1DBlock = DeviceModelTest;

template <class Functor>
class Fixed1DBlockOf : public DeviceModelTest {};
using Functors = testing::Types<CountThreads, CountThreadsOfBlocks<8>, CountThreadsOfBlocks<0>>;
TYPED_TEST_SUITE(Fixed1DBlockOf, Functors);

TYPED_TEST(Fixed1DBlockOf, visitsEveryThreadOnce) {
  this->useDevice(this->deviceWithGrid(3, 40, 1));
  const auto countThreads = [](unsigned long n) {
    return [=](unsigned char* visits) { launchWithDeviceFunctor<TypeParam>(nullptr, n, 8UL, visits, n); };
  };
  for (const unsigned long n : {1, 8, 9, 24, 25, 41, 73, 500}) {
    this->expectVisitsOnce(n, "device launch ", countThreads(n));
  }
  EXPECT_EQ(this->launched(), Shape({3, 21, 1, 8, 1, 1}));

  EXPECT_EQ(this->callsOf([=] { countThreads(0)(nullptr); }), "");
  this->expectFailuresAreHandled(300, "device launch ", countThreads(300));
  this->model().limitKernels(7);
  this->expectVisitsNothing(300, false, countThreads(300));
}

TEST_F(Fixed1DBlock, countsThreadsIn64Bits) {
  using gpuruntime::fixed1dblockdetail::chooseFixed1DBlockGrid;
  EXPECT_EQ(shapeOf(chooseFixed1DBlockGrid(0, 128)), Shape({1, 1, 1, 128, 1, 1}));
  EXPECT_EQ(shapeOf(chooseFixed1DBlockGrid((1UL << 33) - 127, 256)), Shape({65409, 513, 1, 256, 1, 1}));
  constexpr unsigned long first = 1UL << 32;
  expectVisitsOnce(3, "device launch ", [](unsigned char* visits) {
    launchWithDeviceFunctor<CountLateBlocks>(nullptr, first + 2 * 1024 + 5, 1024UL, visits, first);
  });
}

}  // namespace
