#include "support/devicemodel.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using Answer = std::pair<bool, bool>;

struct CheckGridTest : DeviceModelTest {
  template <class T>
  static Answer check(const std::vector<T>& data) {
    HostArray<T> host(data.size());
    if (!data.empty()) std::memcpy(host.data(), data.data(), data.size() * sizeof(T));
    const GuardedArray<T> onDevice(host);
    const unsigned long n = data.size();
    return typename gpuruntime::CheckInfNaNAndStrictlyIncreasing::Invoker<T>()(nullptr, onDevice.data(), n);
  }

  template <class T>
  static void checkAll() {
    constexpr T missing = std::numeric_limits<T>::quiet_NaN(), infinity = std::numeric_limits<T>::infinity();
    EXPECT_EQ(check<T>({}), Answer(false, false));
    EXPECT_EQ(check<T>({5}), Answer(false, false));
    EXPECT_EQ(check<T>({1, 1}), Answer(false, true));
    EXPECT_EQ(check<T>({T(-0.0), 0}), Answer(false, true));
    EXPECT_EQ(check<T>({1, missing, 3}), Answer(true, false));
    EXPECT_EQ(check<T>({-infinity, 0, infinity}), Answer(true, false));
    EXPECT_EQ(check<T>({missing, 2, 1}), Answer(true, true));
    // At the ends of blocks, and of the vector.
    std::vector<T> rising(1000);
    for (unsigned long i = 0; i < rising.size(); ++i) rising[i] = static_cast<T>(i);
    EXPECT_EQ(check(rising), Answer(false, false));
    for (const unsigned long i : {0UL, 255UL, 256UL, 998UL, 999UL}) {
      std::vector<T> other = rising;
      other[i] = i == 0 ? T(1) : rising[i - 1];
      EXPECT_EQ(check(other), Answer(false, true)) << i;
      other[i] = missing;
      EXPECT_EQ(check(other), Answer(true, false)) << i;
    }
  }
};

TEST_F(CheckGridTest, TellsTheTwoAnswersApart) {
  checkAll<double>();
  checkAll<float>();
}

TEST_F(CheckGridTest, AnswersTrueTwiceWhereACopyFails) {
  for (const Call call : {Call::memcpyToSymbol, Call::memcpyFromSymbol}) {
    model().failCall(call, 1, cudaErrorLaunchFailure);
    EXPECT_EQ(check<double>({1, 2}), Answer(true, true));
  }
  EXPECT_EQ(check<double>({1, 2}), Answer(false, false));
}

}  // namespace
