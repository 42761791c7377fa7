// Filters and differences on a device with a small grid, and where a query or a launch fails.
#include "support/devicemodel.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;

constexpr unsigned int length = 19, columns = 200, pages = 5, n = length * columns * pages;

struct SmallGridsTest : DeviceModelTest {
  SmallGridsTest() : input(n), coefficients(HostArray<double>(3)), output(n) {
    HostArray<double> samples(n), abc(3);
    for (unsigned int i = 0; i < n; ++i) samples[i] = i % 17;
    abc[0] = 2, abc[1] = 0.5, abc[2] = -0.25;
    input = GuardedArray<double>(samples);
    coefficients = GuardedArray<double>(abc);
  }

  void filter() {
    gpuruntime::IIRFilter::Invoker<double, mpl_::integral_c<int, 2>>()(
        nullptr, output.data(), nullptr, coefficients.data(), coefficients.data(), input.data(), nullptr, 2, 3, length,
        columns, columns, pages, 0);
  }
  void subtract() { gpuruntime::Diff::Invoker<double>()(nullptr, output.data(), input.data(), 1, n - 1, n - 1); }

  GuardedArray<double> input, coefficients, output;
};

TEST_F(SmallGridsTest, FiltersInManySteps) {
  filter();
  const HostArray<double> expected = output.toHost();
  output = GuardedArray<double>(n);
  useDevice(deviceWithGrid(1, 2, 1));
  callsOf([&] { filter(); });
  EXPECT_EQ(launched(), (Shape{1, 2, 1, 64, 1, 1}));
  expectElements(output.toHost(), [&](unsigned long i) { return expected[i]; });
}

TEST_F(SmallGridsTest, QueriesRaiseAndLaunchesStaySilent) {
  model().failCall(Call::getDevice, 1, cudaErrorLaunchFailure);
  expectRaises("vantor::gpu::device::UnknownCUDAError", [&] { filter(); });
  model().failCall(Call::getDevice, 1, cudaErrorLaunchFailure);
  expectRaises("vantor::gpu::device::UnknownCUDAError", [&] { subtract(); });
  model().failCall(Call::launch, 1, cudaErrorLaunchFailure);
  filter();
  model().failCall(Call::launch, 1, cudaErrorLaunchFailure);
  subtract();
  expectUntouched(output.toHost());
}

}  // namespace
