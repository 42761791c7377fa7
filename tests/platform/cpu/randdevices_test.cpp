// Random arrays on other devices: the same elements, and what becomes of failing calls.
#include <gpuruntime/gpuruntime.hpp>

#include "support/devicemodel.hpp"
#include "support/randreference.hpp"

namespace {

using namespace testsupport;

class RandDevices : public DeviceModelTest {
 protected:
  template <class G>
  static std::vector<double> drawn(unsigned long n) {
    std::vector<double> out(n + 1, -1);
    Words state = stateAt<G>(1);
    typename gpuruntime::Rand<G>::template Invoker<double>()(nullptr, out.data(), state.data(), n);
    return out;
  }
  static void useMultiprocessors(int count, int major) {
    DeviceProperties device = deviceWithGrid(2147483647, 65535, 65535);
    device.multiProcessorCount = count;
    device.major = major;
    useDevice(device);
  }
};

TEST_F(RandDevices, GiveTheSameArrayWithAnyNumberOfMultiprocessors) {
  const unsigned long n = 1UL << 20 | 5;
  const std::vector<double> philox = drawn<Philox4x32Generator>(n), mrg = drawn<MRG32K3AGenerator>(n);
  for (const int count : {1, 2, 7, 132}) {
    for (const int major : {2, 9}) {
      useMultiprocessors(count, major);
      EXPECT_EQ(drawn<Philox4x32Generator>(n), philox);
      model().startRecording();
      EXPECT_EQ(drawn<MRG32K3AGenerator>(n), mrg);
      const unsigned long blocks = static_cast<unsigned long>(count) * (major < 3 ? 6 : 12);
      EXPECT_EQ(launched(), (Shape{blocks, 1, 1, 64, 1, 1}));
    }
  }
}

TEST_F(RandDevices, LaunchForEightSamplesAThread) {
  useDevice(deviceWithGrid(100, 65535, 65535));
  for (const auto& [n, grid] : std::vector<std::pair<unsigned long, std::pair<unsigned long, unsigned long>>>{
           {0, {1, 1}}, {1, {1, 1}}, {512, {1, 1}}, {513, {2, 1}}, {100 * 512 + 1, {51, 2}}}) {
    model().startRecording();
    const std::vector<double> out = drawn<ThreeFry4x64Generator>(n);
    EXPECT_EQ(model().countOf(Call::memcpyToSymbol), 1u);
    EXPECT_EQ(launched(), (Shape{grid.first, grid.second, 1, 64, 1, 1})) << n;
    const std::vector<Sample> expected = samplesOf<ThreeFry4x64Generator>(stateAt<ThreeFry4x64Generator>(1), n);
    for (unsigned long i = 0; i < n; ++i) ASSERT_EQ(out[i], expected[i].uniform()) << i;
    EXPECT_EQ(out[n], -1);
  }
}

TEST_F(RandDevices, NothingIsDrawnWhenACallFails) {
  const std::vector<double> untouched(101, -1);
  model().failCall(Call::memcpyToSymbol, 1, cudaErrorLaunchFailure);
  model().startRecording();
  EXPECT_EQ(drawn<Philox4x32Generator>(100), untouched);
  EXPECT_EQ(model().countOf(Call::launch), 0u);
  useMultiprocessors(8, 9);
  model().failCall(Call::launch, 1, cudaErrorLaunchFailure);
  EXPECT_EQ(drawn<MRG32K3AGenerator>(100), untouched);
  useMultiprocessors(8, 9);
  model().failCall(Call::getDevice, 1, cudaErrorInvalidDevice);
  expectRaises("vantor::gpu::device::UnknownCUDAError", [] { drawn<MRG32K3AGenerator>(100); });
}

}  // namespace
