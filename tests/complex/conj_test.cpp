#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct ConjTest : ::testing::Test {};
TYPED_TEST_SUITE(ConjTest, TestTypes<gpuruntime::ComplexFloatTypes>);

// The expected bits: of the last byte of an element, the sign of the imaginary part, the top bit flips.
template <class T>
T signFlipped(T value) {
  reinterpret_cast<unsigned char*>(&value)[sizeof(T) - 1] ^= 0x80;
  return value;
}

TYPED_TEST(ConjTest, FlipsOneBitOutOfPlaceAndInPlace) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    HostArray<T> in = HostArray<T>::counting(n);
    if (n > 1) in[1] = T{1, 0};
    const GuardedArray<T> input(in, 1);
    GuardedArray<T> output(n), inPlace(in);
    typename gpuruntime::Conj::Invoker<T>()(nullptr, output.data(), input.data(), n);
    typename gpuruntime::Conj::Invoker<T>()(nullptr, inPlace.data(), inPlace.data(), n);
    expectElements(output.toHost(), [&](unsigned long i) { return signFlipped(in[i]); });
    expectElements(inPlace.toHost(), [&](unsigned long i) { return signFlipped(in[i]); });
  }
}

}  // namespace
