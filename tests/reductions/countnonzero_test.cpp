#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
struct CountNonZeroTest : ::testing::Test {};
TYPED_TEST_SUITE(CountNonZeroTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(CountNonZeroTest, CountsAllButZeros) {
  using T = TypeParam;
  using Acc = double;
  expectAnswers<T>(
      false, 0.0, [](Answers a) { return !a.zero; }, [](Acc a, Acc b) { return a + b; },
      [](Acc* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
        typename gpuruntime::CountNonZero::Invoker<T>()(nullptr, out, in, N, L);
      });
}

}  // namespace
