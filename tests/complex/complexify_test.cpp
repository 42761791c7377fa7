#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using gpuruntime::ComplexOf;

template <class T>
struct ComplexifyTest : ::testing::Test {};
TYPED_TEST_SUITE(ComplexifyTest, TestTypes<gpuruntime::RealNumericTypes>);

// Random bits, signalling NaNs among them, must arrive as they are.
TYPED_TEST(ComplexifyTest, JoinsPartsBitByBit) {
  using T = TypeParam;
  using Complex = ComplexOf<T>;
  for (const unsigned long n : elementwiseSizes()) {
    const HostArray<T> first = HostArray<T>::counting(n, 3), second = HostArray<T>::counting(n, 4);
    const GuardedArray<T> real(first, 1), imag(second);
    const HostArray<T> scalars = HostArray<T>::counting(1, 5);
    GuardedArray<Complex> joined(n), withScalarImag(n, 1), withScalarReal(n);
    typename gpuruntime::ComplexifyPtrPtr::Invoker<T>()(nullptr, joined.data(), real.data(), imag.data(), n);
    typename gpuruntime::ComplexifyPtrScalar::Invoker<T>()(nullptr, withScalarImag.data(), real.data(), scalars[0], n);
    typename gpuruntime::ComplexifyScalarPtr::Invoker<T>()(nullptr, withScalarReal.data(), scalars[0], imag.data(), n);
    const auto pair = [](const T& x, const T& y) {
      Complex value;
      std::memcpy(&value.x, &x, sizeof x);
      std::memcpy(&value.y, &y, sizeof y);
      return value;
    };
    expectElements(joined.toHost(), [&](unsigned long i) { return pair(first[i], second[i]); });
    expectElements(withScalarImag.toHost(), [&](unsigned long i) { return pair(first[i], scalars[0]); });
    expectElements(withScalarReal.toHost(), [&](unsigned long i) { return pair(scalars[0], second[i]); });
  }
}

}  // namespace
