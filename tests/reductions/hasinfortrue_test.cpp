#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
struct HasInfTest : ::testing::Test {};
TYPED_TEST_SUITE(HasInfTest, TestTypes<gpuruntime::FloatTypes>);

TYPED_TEST(HasInfTest, FindsInfinities) {
  using T = TypeParam;
  using Acc = bool;
  expectAnswers<T>(
      false, false, [](Answers a) { return a.inf; }, [](Acc a, Acc b) { return a || b; },
      [](Acc* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
        typename gpuruntime::HasInf::Invoker<T>()(nullptr, out, in, N, L);
      });
}

}  // namespace
