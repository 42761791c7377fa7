// The families that copy to and from device words, when a copy fails.
#include "support/devicemodel.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;

constexpr unsigned long n = 5;

struct FailedCopiesTest : DeviceModelTest {
  FailedCopiesTest() : input(HostArray<double>(n)) {}

  static void fail(Call call) {
    model().reset();
    model().startRecording();
    model().failCall(call, 1, cudaErrorLaunchFailure);
  }

  const GuardedArray<double> input;
};

TEST_F(FailedCopiesTest, CastOfTheSameTypeIsOneCopyWhoseFailureStaysSilent) {
  GuardedArray<double> output(n);
  fail(Call::memcpy);
  gpuruntime::CastToReal::Invoker<double, double>()(nullptr, n, output.data(), input.data());
  expectUntouched(output.toHost());
  EXPECT_EQ(model().calls().size(), 1u);
}

TEST_F(FailedCopiesTest, CastToBoolStopsOrTells) {
  const gpuruntime::CastToBool family;
  const gpuruntime::CastToBool::Invoker<double> cast;
  GuardedArray<bool> output(n);
  EXPECT_EQ(family.getErrorFlag(nullptr), 0u);  // Never armed.
  fail(Call::memcpyToSymbol);
  cast(nullptr, n, output.data(), input.data());
  EXPECT_EQ(model().countOf(Call::launch), 0u);
  expectUntouched(output.toHost());
  EXPECT_EQ(family.getErrorFlag(nullptr), 0u);
  cast(nullptr, n, output.data(), input.data());
  for (const Call call : {Call::memcpyFromSymbol, Call::streamSynchronize}) {
    fail(call);
    EXPECT_EQ(family.getErrorFlag(nullptr), 1037u);
    EXPECT_EQ(family.getErrorFlag(nullptr), 1000u);
  }
}

TEST_F(FailedCopiesTest, ChecksAnswerTrue) {
  const gpuruntime::CheckNaN::Invoker<double> check;
  EXPECT_FALSE(check(nullptr, input.data(), n));
  fail(Call::memcpyToSymbol);
  EXPECT_TRUE(check(nullptr, input.data(), n));
  EXPECT_EQ(model().countOf(Call::launch), 0u);
  fail(Call::memcpyFromSymbol);
  EXPECT_TRUE(check(nullptr, input.data(), n));
  EXPECT_EQ(model().countOf(Call::launch), 1u);
}

TEST_F(FailedCopiesTest, NothingToCheckLaunchesNothing) {
  model().startRecording();
  EXPECT_FALSE(gpuruntime::CheckNaN::Invoker<double>()(nullptr, input.data(), 0));
  EXPECT_EQ(model().countOf(Call::launch), 0u);
}

}  // namespace
