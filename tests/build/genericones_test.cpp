#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct GenericOnesTest : ::testing::Test {};
TYPED_TEST_SUITE(GenericOnesTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(GenericOnesTest, FillsWithTheBitsOfTheValue) {
  using T = TypeParam;
  const T value = HostArray<T>::counting(1, 5)[0];
  for (const unsigned long n : elementwiseSizes()) {
    for (const unsigned long offset : {0UL, 1UL}) {
      GuardedArray<T> out(n, offset);
      typename gpuruntime::GenericOnes::Invoker<T>()(nullptr, n, out.data(), value);
      expectElements(
          out.toHost(), [&](unsigned long) { return value; }, "n = " + std::to_string(n));
    }
  }
}

// A value that passes through floating-point registers as a number would lose the payload or the signalling bit.
TEST(GenericOnes, KeepsTheBitsOfNaN) {
  const auto fill = [](auto bits, auto value) {
    std::memcpy(&value, &bits, sizeof value);
    GuardedArray<decltype(value)> out(300);
    typename gpuruntime::GenericOnes::Invoker<decltype(value)>()(nullptr, 300, out.data(), value);
    expectElements(out.toHost(), [&](unsigned long) { return value; });
  };
  fill(0x7FF0DEADBEEF0001ULL, double{});
  fill(0xFFFC000000001234ULL, double{});
  fill(0x7F80BEEFU, float{});
}

}  // namespace
