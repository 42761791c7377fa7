#include <gpuruntime/util/device.hpp>

#include "support/devicemodel.hpp"
#include "util/safecast.hpp"

namespace {

using gpuruntime::util::checkAndThrow;
using gpuruntime::util::getCurrentDeviceProperties;

constexpr char unknownError[] = "vantor::gpu::device::UnknownCUDAError";
constexpr char invalidValue[] = "vantor::gpu::array::InvalidValue";

const auto query = [] { getCurrentDeviceProperties(); };

using Device = DeviceModelTest;

TEST_F(Device, clampsTheGridAndKeepsTheRest) {
  useDevice({512, {256, 128, 32}, {2147483647, 65536, 65534}, 17, 8, 6});
  const gpuruntime::CUDADeviceProperties& device = getCurrentDeviceProperties();
  using Extents = boost::array<unsigned long, 3>;
  EXPECT_EQ(device.usableGridSize, (Extents{65535, 65535, 65534}));
  EXPECT_EQ(device.maxGridSize, (Extents{2147483647, 65536, 65534}));
  EXPECT_EQ(device.maxThreadsDim, (Extents{256, 128, 32}));
  EXPECT_EQ(device.maxThreadsPerBlock, 512u);
  EXPECT_EQ(device.multiProcessorCount, 17u);
  EXPECT_TRUE(device.major == 8 && device.minor == 6);
}

TEST_F(Device, keepsOneEntryForTheCurrentDevice) {
  model().devices[1].multiProcessorCount = 99;
  EXPECT_EQ(callsOf(query), "device ");
  for (const int change : {1, 0, 1}) {
    model().currentDevice = change;
    EXPECT_EQ(callsOf(query), "device properties ");
    EXPECT_EQ(callsOf(query), "device ");
    EXPECT_EQ(getCurrentDeviceProperties().multiProcessorCount, change == 1 ? 99u : 8u);
  }
}

TEST_F(Device, keepsTheEntryWhenAQueryFails) {
  const auto expectFails = [](const char* identifier) {
    model().currentDevice = 1;
    expectRaises(identifier, query);
    model().currentDevice = 0;
    EXPECT_EQ(callsOf(query), "device ");
    EXPECT_EQ(getCurrentDeviceProperties().multiProcessorCount, 8u);
  };
  for (const Call failing : {Call::getDevice, Call::getDeviceProperties}) {
    model().failCall(failing, 1, cudaErrorLaunchFailure);
    expectFails(unknownError);
  }
  const auto expectRefuses = [&](int& limit) {
    const int sound = limit;
    limit = -1;
    expectFails(invalidValue);
    limit = sound;
  };
  DeviceProperties& device = model().devices[1];
  for (int& limit : device.maxThreadsDim) expectRefuses(limit);
  for (int& limit : device.maxGridSize) expectRefuses(limit);
  for (int* limit : {&device.maxThreadsPerBlock, &device.multiProcessorCount, &device.major, &device.minor}) {
    expectRefuses(*limit);
  }
}

TEST_F(Device, turnsAStatusIntoAnErrorWithItsText) {
  EXPECT_EQ(callsOf([] { checkAndThrow(cudaSuccess); }), "");
  try {
    checkAndThrow(cudaErrorInvalidConfiguration);
    ADD_FAILURE();
  } catch (const gpuruntime::MessageError& error) {
    EXPECT_EQ(error.identifier(), unknownError);
    EXPECT_NE(std::string(error.what()).find("invalid configuration argument"), std::string::npos) << error.what();
  }
}

TEST_F(Device, castsWhatTheTargetCanHold) {
  constexpr auto cast = gpuruntime::util::safeCast<unsigned long, int>;
  EXPECT_EQ(cast(0), 0u);
  EXPECT_EQ(cast(2147483647), 2147483647u);
  expectRaises(invalidValue, [=] { cast(-1); });
}

}  // namespace
