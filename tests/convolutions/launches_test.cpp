// How convolutions start, and what they do when the copy of the filter fails.
#include "support/convolution.hpp"
#include "support/devicemodel.hpp"

namespace {

using namespace testsupport;
using gpuruntime::convolutioncommon::KernelType;
using gpuruntime::convolutioncommon::KernelTypeColumn;
using gpuruntime::convolutioncommon::KernelTypeRow;

constexpr unsigned long rows = 1000, columns = 130, taps = 5, size = rows * columns;

struct ConvolutionLaunchesTest : DeviceModelTest {
  using Sizes = std::vector<unsigned long>;

  const GuardedArray<float> in{convolutionData<float>(size, 1)}, filter{convolutionData<float>(taps * taps, 2)};
  GuardedArray<float> out{size};

  void vector() {
    gpuruntime::ConvolutionVector::Invoker<float, mpl_::int_<taps>>()(nullptr, out.data(), in.data(), filter.data(),
                                                                      {0, size, size, 0, 0, 0, true});
  }
  void matrix(KernelType direction) {
    gpuruntime::ConvolutionMatrix::Invoker<float, mpl_::int_<taps>>()(
        nullptr, out.data(), in.data(), filter.data(), {rows, columns}, {rows, columns},
        {0, 0, 0, {0, 0, rows, columns}, {0, 0}, 0, 0, 0, 0, rows, columns, true}, 2, direction);
  }
  void square() {
    gpuruntime::ConvolutionSquare::Invoker<float, mpl_::size_t<taps>>()(
        nullptr, out.data(), in.data(), filter.data(), {rows, columns}, {rows, columns}, 0, {2, 2}, {0, 0, 0});
  }

  /// On a device with large grids the call makes this launch; in many steps on one with small grids it does the same;
  /// it does nothing when its copy fails.
  template <class Run>
  void check(const Shape& shape, bool hasSteps, Run run) {
    useDevice(deviceWithGrid(65535, 65535, 65535));
    model().startRecording();
    model().failCall(Call::memcpyToSymbol, 1, cudaErrorLaunchFailure);
    run();
    EXPECT_EQ(model().countOf(Call::launch), 0u);
    expectUntouched(out.toHost());
    useDevice(deviceWithGrid(65535, 65535, 65535));
    model().startRecording();
    run();
    EXPECT_EQ(launched(), shape);
    EXPECT_EQ(model().countOf(Call::memcpyToSymbol), 1u);
    const HostArray<float> expected = out.toHost();
    out = GuardedArray<float>(size);
    if (hasSteps) useDevice(deviceWithGrid(3, 5, 1));
    run();
    expectElements(out.toHost(), [&](unsigned long i) { return expected[i]; });
    out = GuardedArray<float>(size);
  }
};

TEST_F(ConvolutionLaunchesTest, HaveTheirShapes) {
  check({64, 1, 1, 128, 1, 1}, false, [&] { vector(); });
  check({3, 33, 1, 32, 4, 1}, true, [&] { matrix(KernelTypeColumn); });
  check({63, 2, 1, 16, 8, 1}, true, [&] { matrix(KernelTypeRow); });
  check({63, 2, 1, 16, 8, 1}, true, [&] { matrix(static_cast<KernelType>(7)); });
  check({63, 9, 1, 16, 4, 1}, true, [&] { square(); });
}

}  // namespace
