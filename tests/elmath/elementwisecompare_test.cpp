#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

template <class T>
inline constexpr bool isLong = std::is_integral_v<T> && sizeof(T) == 8;

// The rule in long double, which holds every value; pairs of different types go through double first.
template <class A, class B>
bool equalByRule(const A& a, const B& b, bool nanEqual) {
  if constexpr (isComplex<A> && isComplex<B>) {
    return equalByRule(a.x, b.x, nanEqual) && equalByRule(a.y, b.y, nanEqual);
  } else if constexpr (isComplex<A>) {
    return equalByRule(a.x, b, nanEqual) && a.y == 0;
  } else if constexpr (isComplex<B>) {
    return equalByRule(b, a, nanEqual);
  } else if constexpr (std::is_same_v<A, bool> && std::is_same_v<B, bool>) {
    return sameBits(a, b);
  } else {
    constexpr bool exactly = std::is_same_v<A, B> || (isLong<A> && isLong<B>);
    const long double x = exactly ? exactValue(a) : static_cast<double>(exactValue(a));
    const long double y = exactly ? exactValue(b) : static_cast<double>(exactValue(b));
    return x == y || (nanEqual && std::isnan(x) && std::isnan(y));
  }
}

template <class A, class B>
void expectComparison(const std::string& context) {
  // Every value against every other.
  const HostArray<A> left = trickyValues<A>();
  const HostArray<B> right = trickyValues<B>();
  const unsigned long n = left.size() * right.size();
  HostArray<A> a(n);
  HostArray<B> b(n);
  for (unsigned long i = 0; i < n; ++i) {
    std::memcpy(&a[i], &left[i % left.size()], sizeof(A));
    std::memcpy(&b[i], &right[i / left.size()], sizeof(B));
  }
  const GuardedArray<A> inputA(a, 1);
  const GuardedArray<B> inputB(b);
  for (const bool nanEqual : {false, true}) {
    GuardedArray<bool> result(n, 1);
    typename gpuruntime::ElementwiseCompare::Invoker<A, B>()(nullptr, n, result.data(), inputA.data(), inputB.data(),
                                                             nanEqual);
    expectElements(
        result.toHost(), [&](unsigned long i) { return equalByRule(a[i], b[i], nanEqual); }, context);
  }
}

template <class T>
struct ElementwiseCompareTest : ::testing::Test {
  template <class... Types>
  static void againstEach(gpuruntime::TypeList<Types...>) {
    (expectComparison<T, Types>(__PRETTY_FUNCTION__), ...);
  }
};
TYPED_TEST_SUITE(ElementwiseCompareTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(ElementwiseCompareTest, FollowsTheRuleAgainstEveryType) {
  this->againstEach(gpuruntime::AllTypes{});
}

TEST(ElementwiseCompareTest, EveryElementOfEverySizeIsCompared) {
  for (const unsigned long n : elementwiseSizes()) {
    const HostArray<float> a = HostArray<float>::counting(n);
    HostArray<float> b = a;
    for (unsigned long i = 0; i < n; i += 3) b[i] = 1;
    const GuardedArray<float> inputA(a), inputB(b, 1);
    GuardedArray<bool> result(n);
    gpuruntime::ElementwiseCompare::Invoker<float, float>()(nullptr, n, result.data(), inputA.data(), inputB.data(),
                                                            true);
    expectElements(result.toHost(), [&](unsigned long i) { return equalByRule(a[i], b[i], true); });
  }
}

}  // namespace
