/// @file
/// Fixture of the tests that tell the device model which device it is.
#pragma once

#include <gpuruntime/util/device.hpp>
#include <gpuruntime/util/messageerror.hpp>

#include <algorithm>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "platform/cpu/devicemodel.hpp"
#include "support/visits.hpp"

/// Grid, block and, where there are any, steps: x, y, z of each.
using Shape = std::vector<unsigned long>;

class DeviceModelTest : public testing::Test {
 protected:
  using Call = gpuruntime::platform::Call;
  using RecordedCall = gpuruntime::platform::RecordedCall;
  using DeviceProperties = gpuruntime::platform::cudaDeviceProp;

  DeviceModelTest() { useDevice(defaultDevice()); }

  ~DeviceModelTest() override {
    useDevice(defaultDevice());
    model().reset();
  }

  static gpuruntime::platform::DeviceModel& model() { return gpuruntime::platform::DeviceModel::instance(); }

  /// The same device whatever the machine.
  static DeviceProperties defaultDevice() { return {1024, {1024, 1024, 64}, {2147483647, 65535, 65535}, 8, 9, 0}; }

  static DeviceProperties deviceWithGrid(int x, int y, int z) {
    return {1024, {1024, 1024, 64}, {x, y, z}, 8, 9, 0};
  }

  /// Starts over, on this device.
  static void useDevice(const DeviceProperties& device) {
    model().reset();
    model().devices = {device, device};
    // The library keeps the limits of the device that it saw last; another one in between makes it ask again.
    for (const int id : {1, 0}) {
      model().currentDevice = id;
      gpuruntime::util::getCurrentDeviceProperties();
    }
  }

  /// The calls that `action` makes, by name.
  template <class Action>
  static std::string callsOf(Action action) {
    static const char* const names[] = {"getDevice", "getDeviceProperties", "getErrorString",
                                        "attributes", "launch", "memcpy",
                                        "memcpyToSymbol", "memcpyFromSymbol", "streamSynchronize"};
    model().startRecording();
    action();
    std::string text;
    for (const RecordedCall& made : model().calls()) {
      text += (text.empty() ? "" : " ") + std::string(names[static_cast<int>(made.call)]);
    }
    return text;
  }

  /// Grid and block of the launch that was recorded last.
  static Shape lastLaunch() {
    const RecordedCall& made = model().calls().back();
    return {made.grid.x, made.grid.y, made.grid.z, made.block.x, made.block.y, made.block.z};
  }

  template <class Action>
  static void expectRaises(const std::string& identifier, Action action) {
    try {
      action();
      ADD_FAILURE() << "nothing was raised";
    } catch (const gpuruntime::MessageError& error) {
      EXPECT_EQ(error.identifier(), identifier);
    }
  }

  /// Lets each call that `launch(unsigned char* visits)` makes fail in turn. A query raises and nothing is launched; a
  /// launch fails silently. No element is visited either way.
  template <class Launch>
  static void expectFailuresAreHandled(std::size_t elements, Launch launch) {
    const DeviceProperties device = model().devices[0];
    Visits wholeRun(elements);
    callsOf([&] { launch(wholeRun.data()); });
    EXPECT_TRUE(wholeRun.each(1));
    const std::vector<RecordedCall> calls = model().calls();
    for (std::size_t i = 0; i < calls.size(); ++i) {
      const Call failing = calls[i].call;
      const auto isSameCall = [=](const RecordedCall& made) { return made.call == failing; };
      const auto occurrence = std::count_if(calls.begin(), calls.begin() + static_cast<long>(i) + 1, isSameCall);
      useDevice(device);
      model().failCall(failing, static_cast<unsigned int>(occurrence), cudaErrorLaunchFailure);
      model().startRecording();
      Visits visits(elements);
      if (failing == Call::launch) {
        EXPECT_NO_THROW(launch(visits.data()));
      } else {
        expectRaises("vantor::gpu::device::UnknownCUDAError", [&] { launch(visits.data()); });
        EXPECT_EQ(model().countOf(Call::launch), 0u);
      }
      EXPECT_TRUE(visits.each(0)) << "call " << i;
    }
  }

  /// The platform refuses the block or the grid of the launch, and nobody is told.
  template <class Launch>
  static void expectRefusedSilently(std::size_t elements, Launch launch) {
    Visits visits(elements);
    model().startRecording();
    EXPECT_NO_THROW(launch(visits.data()));
    EXPECT_EQ(model().countOf(Call::launch), 1u);
    EXPECT_TRUE(visits.each(0));
  }
};
