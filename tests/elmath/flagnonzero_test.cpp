#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

template <class T>
bool isZeroByRule(const T& value) {
  if constexpr (isComplex<T>) {
    return exactValue(value.x) == 0 && exactValue(value.y) == 0;
  } else {
    return exactValue(value) == 0;
  }
}

template <class T>
struct FlagTest : ::testing::Test {};
TYPED_TEST_SUITE(FlagTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(FlagTest, FlagsByNumbers) {
  using T = TypeParam;
  const HostArray<T> tricky = trickyValues<T>();
  for (const unsigned long n : elementwiseSizes()) {
    if (n > 100000 && sizeof(T) != 4) continue;
    HostArray<T> source(n);
    for (unsigned long i = 0; i < n; ++i) std::memcpy(&source[i], &tricky[i % tricky.size()], sizeof(T));
    const GuardedArray<T> input(source, 1);
    GuardedArray<double> nonZero(n), negative(n, 1);
    typename gpuruntime::FlagNonZero::Invoker<T>()(nullptr, nonZero.data(), input.data(), n);
    expectElements(nonZero.toHost(), [&](unsigned long i) { return isZeroByRule(source[i]) ? 0.0 : 1.0; });
    if constexpr (!isComplex<T>) {
      typename gpuruntime::FlagNegative::Invoker<T>()(nullptr, negative.data(), input.data(), n);
      expectElements(negative.toHost(), [&](unsigned long i) { return exactValue(source[i]) < 0 ? 1.0 : 0.0; });
    }
  }
}

}  // namespace
