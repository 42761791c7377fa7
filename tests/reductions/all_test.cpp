#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
struct AllTest : ::testing::Test {};
TYPED_TEST_SUITE(AllTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(AllTest, IsTrueWithoutZeros) {
  using T = TypeParam;
  using Acc = bool;
  expectAnswers<T>(
      true, true, [](Answers a) { return !a.zero; }, [](Acc a, Acc b) { return a && b; },
      [](Acc* out, const T* in, unsigned long N, unsigned long L, unsigned long S) {
        typename gpuruntime::All::Invoker<T>()(nullptr, out, in, N, L, S);
      });
}

}  // namespace
