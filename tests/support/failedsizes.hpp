/// @file
/// Families that stop where their sizes don't reach the device.
#pragma once

#include "gtest/gtest.h"
#include "platform/cpu/devicemodel.hpp"
#include "support/familytest.hpp"

namespace testsupport {

/// `call(double* out)` prints this line, launches nothing and writes nothing where the copy of that number to a symbol
/// fails; 0 lets none fail.
template <class Invoke>
void expectStops(const char* line, unsigned int copy, Invoke call) {
  using gpuruntime::platform::Call;
  gpuruntime::platform::DeviceModel& model = gpuruntime::platform::DeviceModel::instance();
  GuardedArray<double> out(1);
  model.reset();
  model.startRecording();
  if (copy > 0) model.failCall(Call::memcpyToSymbol, copy, cudaErrorLaunchFailure);
  ::testing::internal::CaptureStdout();
  call(out.data());
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), line);
  EXPECT_EQ(model.countOf(Call::launch), 0u);
  expectUntouched(out.toHost());
}

}  // namespace testsupport
