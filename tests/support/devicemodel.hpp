/// @file
/// Fixture of the tests that tell the device model which device it is.
#pragma once

#include <gpuruntime/launcher/elementwisefunctor.hpp>
#include <gpuruntime/util/messageerror.hpp>

#include <algorithm>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "platform/cpu/devicemodel.hpp"
#include "support/visits.hpp"

/// Extents of a box of elements.
struct Box {
  unsigned long x, y, z;
};

/// Writes each element's own number, and counts the visits.
template <class Iterator>
struct Fill : gpuruntime::elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const Iterator& it, unsigned short* out, unsigned char* visits) {
    if (it.isOutside()) return;
    unsigned long element = it.y * it.sizeX + it.x;
    if constexpr (sizeof(Iterator) > 4 * sizeof(unsigned long)) element += it.z * it.sizeX * it.sizeY;
    out[element] = static_cast<unsigned short>(element * 40503);
    ++visits[element];
  }
};

/// Grid and block of a launch, then the steps where a chooser gives them: x, y and z of each.
using Shape = std::vector<unsigned long>;

class DeviceModelTest : public testing::Test {
 protected:
  using Call = gpuruntime::platform::Call;
  using RecordedCall = gpuruntime::platform::RecordedCall;
  using DeviceProperties = gpuruntime::platform::cudaDeviceProp;

  DeviceModelTest() { useDevice(deviceWithGrid(2147483647, 65535, 65535)); }
  ~DeviceModelTest() override {
    useDevice(gpuruntime::platform::DeviceModel::defaultDevice());
    model().reset();
  }

  static gpuruntime::platform::DeviceModel& model() { return gpuruntime::platform::DeviceModel::instance(); }

  static DeviceProperties deviceWithGrid(int x, int y, int z) { return {1024, {1024, 1024, 64}, {x, y, z}, 8, 9, 0}; }

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
    static const char* const names[] = {"device ", "properties ", "text ", "attributes ", "launch "};
    model().startRecording();
    action();
    std::string text;
    for (const RecordedCall& made : model().calls()) text += names[static_cast<int>(made.call)];
    return text;
  }

  /// Grid and block of the launch that was recorded last.
  static Shape launched() {
    const RecordedCall& made = model().calls().back();
    return {made.grid.x, made.grid.y, made.grid.z, made.block.x, made.block.y, made.block.z};
  }

  static Shape shapeOf(const gpuruntime::GridAndBlock& s) {
    return {s.gridX, s.gridY, s.gridZ, s.blockX, s.blockY, s.blockZ};
  }
  static Shape shapeOf(const gpuruntime::GridBlockAndSteps& s) {
    return {s.gridX, s.gridY, s.gridZ, s.blockX, s.blockY, s.blockZ, s.stepsX, s.stepsY, s.stepsZ};
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

  /// `launch(unsigned char* visits)` makes these calls and visits each element once.
  template <class Launch>
  static void expectVisitsOnce(unsigned long elements, const std::string& calls, Launch launch) {
    Visits visits(elements);
    EXPECT_EQ(callsOf([&] { launch(visits.data()); }), calls);
    EXPECT_TRUE(visits.each(1)) << "of " << elements;
  }

  /// `launch(box, out, visits)` with Fill fills arrays that are written past the caches, at any beginning of a line, on
  /// large grids and in many steps on small ones.
  template <class Launch>
  static void expectFills(const std::vector<Box>& boxes, Launch launch) {
    for (const bool isSmall : {false, true}) {
      useDevice(isSmall ? deviceWithGrid(3, 5, 2) : deviceWithGrid(65535, 65535, 65535));
      for (const Box& box : boxes) {
        const unsigned long size = box.x * box.y * box.z;
        Visits visits(size);
        std::vector<unsigned short> out(size + 2, 0xA5A5);
        launch(box, out.data() + 1, visits.data());
        EXPECT_TRUE(visits.each(1)) << box.x << " by " << box.y << " by " << box.z;
        unsigned long wrong = 0;
        for (unsigned long i = 0; i < size; ++i) wrong += out[i + 1] != static_cast<unsigned short>(i * 40503);
        EXPECT_EQ(wrong + (out[0] != 0xA5A5) + (out[size + 1] != 0xA5A5), 0u)
            << box.x << " by " << box.y << " by " << box.z;
      }
    }
  }

  /// The launch visits nothing: a query fails and raises, or else the platform refuses and nobody is told.
  template <class Launch>
  static void expectVisitsNothing(unsigned long elements, bool raises, Launch launch) {
    Visits visits(elements);
    model().startRecording();
    if (raises) {
      expectRaises("vantor::gpu::device::UnknownCUDAError", [&] { launch(visits.data()); });
    } else {
      EXPECT_NO_THROW(launch(visits.data()));
    }
    EXPECT_EQ(model().countOf(Call::launch), raises ? 0u : 1u);
    EXPECT_TRUE(visits.each(0));
  }

  /// Lets each call of the launch fail in turn.
  template <class Launch>
  static void expectFailuresAreHandled(unsigned long elements, const std::string& calls, Launch launch) {
    const DeviceProperties device = model().devices[0];
    expectVisitsOnce(elements, calls, launch);
    const std::vector<RecordedCall> made = model().calls();
    for (auto call = made.begin(); call != made.end(); ++call) {
      const auto isAlike = [=](const RecordedCall& other) { return other.call == call->call; };
      const auto occurrence = static_cast<unsigned int>(std::count_if(made.begin(), call + 1, isAlike));
      useDevice(device);
      model().failCall(call->call, occurrence, cudaErrorLaunchFailure);
      expectVisitsNothing(elements, call->call != Call::launch, launch);
    }
    useDevice(device);
  }
};
