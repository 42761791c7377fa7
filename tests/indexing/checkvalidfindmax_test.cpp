#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

void expectAnswer(const HostArray<double>& input, bool valid, double largest) {
  const GuardedArray<double> device(input, 1);
  const auto answer = gpuruntime::CheckValidFindMax::Invoker<double>()(device.data(), input.size());
  EXPECT_EQ(answer.first, valid);
  EXPECT_TRUE(sameBits(answer.second, largest)) << answer.second << ", expected " << largest;
}

TEST(CheckValidFindMaxTest, OneElementOfEachKind) {
  expectAnswer(HostArray<double>(0), true, 0);
  const HostArray<double> values = trickyValues<double>();
  for (unsigned long i = 0; i < values.size(); ++i) {
    const double x = values[i];
    const bool valid = std::isfinite(x) && x > 0 && std::fmod(x, 1.0) == 0;
    expectAnswer(arrayOf<double>({x}), valid, valid ? x : 0);
    expectAnswer(arrayOf<double>({7, x, 3}), valid, valid ? std::max(x, 7.0) : 0);
  }
}

TEST(CheckValidFindMaxTest, LongArrays) {
  constexpr unsigned long n = 300001;
  HostArray<double> input(n);
  for (unsigned long i = 0; i < n; ++i) input[i] = static_cast<double>(1 + i * 7919 % 1000);
  expectAnswer(input, true, 1000);
  for (const unsigned long i : {0UL, n / 2, n - 1}) {
    HostArray<double> changed = input;
    changed[i] = 0x1p60;
    expectAnswer(changed, true, 0x1p60);
    changed[n - 1 - i] = 2.5;
    expectAnswer(changed, false, 0);
  }
}

}  // namespace
