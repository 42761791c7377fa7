#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using gpuruntime::ComplexOf;

template <class T>
struct ComplexCopyPadTest : ::testing::Test {};
TYPED_TEST_SUITE(ComplexCopyPadTest, TestTypes<gpuruntime::FloatTypes>);

TYPED_TEST(ComplexCopyPadTest, PadsWithZerosAndCuts) {
  using T = TypeParam;
  using Complex = ComplexOf<T>;
  const unsigned long sizes[] = {0, 1, 2, 3, 17, 256, 300};
  for (const unsigned long inRows : sizes) {
    for (const unsigned long outRows : sizes) {
      const unsigned long inCols = (inRows * 5 + 3) % 11, outCols = (outRows * 7 + 2) % 11;
      const HostArray<T> in = HostArray<T>::counting(inRows * inCols);
      const GuardedArray<T> input(in);
      GuardedArray<Complex> output(outRows * outCols, 1);
      typename gpuruntime::ComplexCopyPad::Invoker<T>()(nullptr, output.data(), outRows, outCols, input.data(), inRows,
                                                        inCols);
      expectElements(output.toHost(), [&](unsigned long i) {
        const unsigned long x = i % outRows, y = i / outRows;
        Complex value{0, 0};
        if (x < inRows && y < inCols) std::memcpy(&value, &in[y * inRows + x], sizeof(T));
        return value;
      });
    }
  }
}

}  // namespace
