#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
struct AnyTest : ::testing::Test {};
TYPED_TEST_SUITE(AnyTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(AnyTest, IsTrueForOneThatIsNeitherZeroNorNaN) {
  using T = TypeParam;
  using Acc = bool;
  expectAnswers<T>(
      true, false, [](Answers a) { return !a.zero && !a.nan; }, [](Acc a, Acc b) { return a || b; },
      [](Acc* out, const T* in, unsigned long N, unsigned long L, unsigned long S) {
        typename gpuruntime::Any::Invoker<T>()(nullptr, out, in, N, L, S);
      });
}

}  // namespace
