#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
struct HasNaNTest : ::testing::Test {};
TYPED_TEST_SUITE(HasNaNTest, TestTypes<gpuruntime::FloatTypes>);

TYPED_TEST(HasNaNTest, FindsNaN) {
  using T = TypeParam;
  using Acc = bool;
  expectAnswers<T>(
      false, false, [](Answers a) { return a.nan; }, [](Acc a, Acc b) { return a || b; },
      [](Acc* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
        typename gpuruntime::HasNaN::Invoker<T>()(nullptr, out, in, N, L);
      });
}

}  // namespace
