#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
struct HasNaNOrInfTest : ::testing::Test {};
TYPED_TEST_SUITE(HasNaNOrInfTest, TestTypes<gpuruntime::FloatTypes>);

TYPED_TEST(HasNaNOrInfTest, FindsBoth) {
  using T = TypeParam;
  using Acc = bool;
  expectAnswers<T>(
      false, false, [](Answers a) { return a.nan || a.inf; }, [](Acc a, Acc b) { return a || b; },
      [](Acc* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
        typename gpuruntime::HasNaNOrInf::Invoker<T>()(nullptr, out, in, N, L);
      });
}

}  // namespace
