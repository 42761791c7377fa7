// The families that copy to and from the error word, when a copy fails.
#include "support/devicemodel.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;

struct CheckedCopiesTest : DeviceModelTest {
  static void fail(Call call) {
    model().reset();
    model().startRecording();
    model().failCall(call, 1, cudaErrorLaunchFailure);
  }
};

TEST_F(CheckedCopiesTest, CheckedIndicesStopOrTell) {
  const HostArray<double> subscripts(5);
  const GuardedArray<double> zeros(subscripts);
  GuardedArray<double> linear(5);
  const gpuruntime::Sub2Ind2DChecked family2D;
  const gpuruntime::Sub2Ind3DChecked family3D;
  const auto call2D = [&](unsigned long n) {
    gpuruntime::Sub2Ind2DChecked::Invoker<double>()(nullptr, n, linear.data(), zeros.data(), zeros.data(), 3, 3);
  };
  const auto call3D = [&](unsigned long n) {
    gpuruntime::Sub2Ind3DChecked::Invoker<double>()(nullptr, n, linear.data(), zeros.data(), zeros.data(), zeros.data(),
                                                    3, 3, 3);
  };
  EXPECT_EQ(family2D.getErrorFlag(nullptr), 0u);  // Never armed.
  for (const bool is2D : {true, false}) {
    const unsigned int before = family3D.getErrorFlag(nullptr);
    fail(Call::memcpyToSymbol);
    is2D ? call2D(5) : call3D(5);
    EXPECT_EQ(model().countOf(Call::launch), 0u);
    expectUntouched(linear.toHost());
    EXPECT_EQ(family2D.getErrorFlag(nullptr), before);
    is2D ? call2D(0) : call3D(0);  // Arms the word all the same.
    for (const Call call : {Call::memcpyFromSymbol, Call::streamSynchronize}) {
      fail(call);
      EXPECT_EQ(is2D ? family2D.getErrorFlag(nullptr) : family3D.getErrorFlag(nullptr), 1037u);
      EXPECT_EQ(is2D ? family3D.getErrorFlag(nullptr) : family2D.getErrorFlag(nullptr), 1000u);
    }
  }
  call2D(5);
  EXPECT_EQ(family3D.getErrorFlag(nullptr), 1030u);
}

}  // namespace
