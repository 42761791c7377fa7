#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

template <class T>
struct LogicalTest : ::testing::Test {
  template <class Family, class Expected>
  static void expectAnswers(Expected expected) {
    const HostArray<T> source = trickyValues<T>();
    const unsigned long n = source.size();
    const GuardedArray<T> input(source, 1);
    GuardedArray<bool> output(n, 1);
    typename Family::template Invoker<T>()(nullptr, output.data(), input.data(), n);
    expectElements(output.toHost(), [&](unsigned long i) { return expected(answersOf(source[i])); });
  }
};
TYPED_TEST_SUITE(LogicalTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(LogicalTest, AnswersForEveryElement) {
  using T = TypeParam;
  this->template expectAnswers<gpuruntime::IsNonZero>([](Answers a) { return !a.zero; });
  this->template expectAnswers<gpuruntime::IsNeitherZeroNorNaN>([](Answers a) { return !a.zero && !a.nan; });
  if constexpr (std::is_floating_point_v<gpuruntime::RealOf<T>>) {
    this->template expectAnswers<gpuruntime::IsNaN>([](Answers a) { return a.nan; });
    this->template expectAnswers<gpuruntime::IsInf>([](Answers a) { return a.inf; });
    this->template expectAnswers<gpuruntime::IsNaNOrInf>([](Answers a) { return a.nan || a.inf; });
  }
}

}  // namespace
