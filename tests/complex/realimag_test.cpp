#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

template <class T>
struct RealImagTest : ::testing::Test {};
TYPED_TEST_SUITE(RealImagTest, TestTypes<gpuruntime::ComplexTypes>);

TYPED_TEST(RealImagTest, TakesOnePartBitByBit) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    const HostArray<T> in = HostArray<T>::counting(n);
    const GuardedArray<T> input(in);
    GuardedArray<RealOf<T>> real(n, 1), imag(n);
    typename gpuruntime::Real::Invoker<T>()(nullptr, real.data(), input.data(), n);
    typename gpuruntime::Imag::Invoker<T>()(nullptr, imag.data(), input.data(), n);
    expectElements(real.toHost(), [&](unsigned long i) { return in[i].x; });
    expectElements(imag.toHost(), [&](unsigned long i) { return in[i].y; });
  }
}

}  // namespace
