#include <gpuruntime/launcher/elementwise.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::cuda::ElementwiseIterator;
using gpuruntime::elementwise::launchWithDeviceFunctor;

struct CountVisits {
  static GPURUNTIME_DEVICE void apply(const ElementwiseIterator& it, unsigned char* visits, unsigned long count) {
    if (it.isOutside()) return;
    visits[it.index] += it.count == count ? 1 : 100;
  }
};

template <class T>
struct WriteIndex : gpuruntime::elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const ElementwiseIterator& it, T* out, T first) {
    if (it.isOutside()) return;
    out[it.index] = static_cast<T>(first + it.index);
  }
};

auto countVisits(unsigned long n) {
  return [=](unsigned char* visits) { launchWithDeviceFunctor<CountVisits>(nullptr, n, visits, n); };
}

using Elementwise = DeviceModelTest;

TEST_F(Elementwise, choosesGridAndBlock) {
  const unsigned long cases[][5] = {{1024, 0, 0, 1, 256},  {1024, 256, 1, 1, 256}, {1024, 257, 2, 1, 256},
                                    {192, 192, 1, 1, 192}, {192, 193, 2, 1, 192},  {256, 1UL << 32, 65281, 257, 256}};
  for (const auto& [limit, n, gridX, gridY, blockX] : cases) {
    EXPECT_EQ(shapeOf(gpuruntime::elementwisedetail::chooseElementwiseGridAndBlock({static_cast<int>(limit)}, n)),
              Shape({gridX, gridY, 1, blockX, 1, 1}));
  }
}

TEST_F(Elementwise, visitsEveryElementOnce) {
  for (const int limit : {1, 8, 192, 1024}) {
    useDevice(deviceWithGrid(3, 1000, 1));
    model().limitKernels(limit);
    for (const unsigned long n : {1, 8, 9, 24, 25, 41, 577, 769, 1000}) {
      expectVisitsOnce(n, "attributes device launch ", countVisits(n));
    }
  }
  EXPECT_EQ(launched(), Shape({2, 2, 1, 256, 1, 1}));
  useDevice(deviceWithGrid(65536, 2, 1));
  expectVisitsOnce(16776961, "attributes device launch ", countVisits(16776961));
  EXPECT_EQ(launched(), Shape({32768, 2, 1, 256, 1, 1}));
}

TEST_F(Elementwise, handlesNoElementsAndFailures) {
  EXPECT_EQ(callsOf([] { countVisits(0)(nullptr); }), "");
  expectFailuresAreHandled(1000, "attributes device launch ", countVisits(1000));
  model().devices[0].maxThreadsDim[0] = 255;
  expectVisitsNothing(10, false, countVisits(10));
}

// Small arrays are written in place, large ones by way of a window for each block.
template <class T>
void expectWritesIndices(unsigned long n, unsigned long misalignment) {
  constexpr unsigned long guard = 64;
  std::vector<T> out(n + misalignment + 2 * guard, T(77));
  launchWithDeviceFunctor<WriteIndex<T>>(nullptr, n, out.data() + guard + misalignment, T(1));
  for (unsigned long i = 0; i < out.size(); ++i) {
    const unsigned long index = i - guard - misalignment;  // Wraps in front of the array.
    ASSERT_EQ(out[i], index < n ? static_cast<T>(index + 1) : T(77)) << index << " of " << n;
  }
}

TEST_F(Elementwise, writesThroughTheWindowOfABlock) {
  for (const int limit : {1024, 192}) {
    model().limitKernels(limit);
    for (const unsigned long n : {1UL, 255UL, 600001UL}) {
      expectWritesIndices<double>(n, n % 2);
      expectWritesIndices<unsigned char>(8 * n, 3);
    }
  }
}

}  // namespace
