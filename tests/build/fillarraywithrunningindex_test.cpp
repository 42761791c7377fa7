#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct FillArrayWithRunningIndexTest : ::testing::Test {};
TYPED_TEST_SUITE(FillArrayWithRunningIndexTest, TestTypes<gpuruntime::DoubleAndIntTypes>);

// Counts by hand, run after run, where the kernel divides.
template <class T>
HostArray<T> countedRuns(unsigned long n, unsigned long runLength, unsigned long numRuns) {
  HostArray<T> expected(n);
  unsigned long i = 0;
  while (i < n) {
    for (unsigned long run = 1; run <= numRuns && i < n; ++run) {
      for (unsigned long k = 0; k < runLength && i < n; ++k) expected[i++] = static_cast<T>(run);
    }
  }
  return expected;
}

TYPED_TEST(FillArrayWithRunningIndexTest, CountsRunsAndStartsAgain) {
  using T = TypeParam;
  // 49 times the rounded 1/49 is less than 1.
  const unsigned long shapes[][2] = {{2, 3}, {1, 1}, {1, 7}, {5, 1}, {100, 33}, {49, 3}, {7, 7}, {1UL << 33, 2}};
  for (const auto& [runLength, numRuns] : shapes) {
    for (const unsigned long n : {0UL, 1UL, 8UL, 257UL, 600001UL}) {
      GuardedArray<T> out(n, 1);
      typename gpuruntime::FillArrayWithRunningIndex::Invoker<T>()(nullptr, n, out.data(), runLength, numRuns);
      const HostArray<T> expected = countedRuns<T>(n, runLength, numRuns);
      expectElements(
          out.toHost(), [&](unsigned long i) { return expected[i]; }, "run length " + std::to_string(runLength));
    }
  }
}

}  // namespace
