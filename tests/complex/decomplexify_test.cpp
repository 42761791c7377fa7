#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

template <class T>
struct DecomplexifyTest : ::testing::Test {};
TYPED_TEST_SUITE(DecomplexifyTest, TestTypes<gpuruntime::ComplexTypes>);

TYPED_TEST(DecomplexifyTest, SplitsPairsBitByBit) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    const HostArray<T> in = HostArray<T>::counting(n);
    const GuardedArray<T> input(in, 1);
    GuardedArray<RealOf<T>> real(n, 1), imag(n);
    typename gpuruntime::Decomplexify::Invoker<T>()(nullptr, real.data(), imag.data(), input.data(), n);
    expectElements(real.toHost(), [&](unsigned long i) { return in[i].x; });
    expectElements(imag.toHost(), [&](unsigned long i) { return in[i].y; });
  }
}

}  // namespace
