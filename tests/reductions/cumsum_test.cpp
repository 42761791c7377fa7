#include "support/scanreference.hpp"

namespace {

using namespace testsupport;
using gpuruntime::CumSum;
using gpuruntime::CumSumAdjust;

template <class T>
struct CumSumTest : ::testing::Test {};
TYPED_TEST_SUITE(CumSumTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(CumSumTest, DoesTheStatedOperationsInTheirOrder) {
  expectScans<CumSum, CumSumAdjust, SumRule, TypeParam>(scanFolds());
}

TYPED_TEST(CumSumTest, LeavesAllAloneWithoutElements) {
  using T = TypeParam;
  GuardedArray<T> totals(2), data(2);
  for (const unsigned long S : {1UL, 2UL}) {
    typename CumSum::Invoker<T>()(nullptr, totals.data(), data.data(), 0, S - 1, S);
    typename CumSumAdjust::Invoker<T>()(nullptr, totals.data(), data.data(), 0, S - 1, 2, S);
  }
  expectUntouched(totals.toHost());
  expectUntouched(data.toHost());
}

template <class T>
HostArray<T> scanned(const std::vector<T>& values, unsigned long L, unsigned long S) {
  GuardedArray<T> data(arrayOf(values)), totals(values.size());
  typename CumSum::Invoker<T>()(nullptr, totals.data(), data.data(), values.size(), L, S);
  return data.toHost();
}

template <class T>
void expectScanned(const std::vector<T>& values, unsigned long L, unsigned long S, const std::vector<T>& expected) {
  expectElements(
      scanned(values, L, S), [&](unsigned long i) { return expected[i]; }, "S = " + std::to_string(S));
}

// Known by hand; columns stand beside a column of zeros.
TEST(CumSum, ShowsItsOrderOnKnownValues) {
  const double big = 0x1p53;
  expectScanned<double>({big, 1, 1, 1}, 4, 1, {big, big, big, big + 2});
  expectScanned<double>({big, 0, 1, 0, 1, 0, 1, 0}, 4, 2, {big, 0, big, 0, big, 0, big, 0});
  expectScanned<double>({-0.0, -0.0, -0.0}, 1, 1, {0.0, 0.0, 0.0});
  expectScanned<double>({-0.0, -0.0, -0.0, -0.0}, 2, 2, {-0.0, -0.0, -0.0, -0.0});
  expectScanned<unsigned char>({200, 100, 1}, 3, 1, {200, 255, 255});
  expectScanned<signed char>({100, 100, -1, -1, 100}, 5, 1, {100, 127, 126, 125, 127});
}

// A dimension of 4 chunks, by the three calls: whole numbers, so that every order gives the same.
TEST(CumSum, JoinsChunksToTheScanOfTheWholeDimension) {
  constexpr unsigned long L = 300, K = 4;
  for (const unsigned long S : {1UL, 3UL}) {
    std::vector<double> values(2 * S * L * K), expected(values.size());
    for (unsigned long i = 0; i < values.size(); ++i) {
      const unsigned long row = i / S % (L * K);
      values[i] = static_cast<double>(i % 17);
      expected[i] = values[i] + (row > 0 ? expected[i - S] : 0);
    }
    GuardedArray<double> data(arrayOf(values)), totals(2 * S * K), others(2 * S);
    CumSum::Invoker<double>()(nullptr, totals.data(), data.data(), values.size(), L, S);
    CumSum::Invoker<double>()(nullptr, others.data(), totals.data(), 2 * S * K, K, S);
    CumSumAdjust::Invoker<double>()(nullptr, totals.data(), data.data(), values.size(), L, K, S);
    expectElements(data.toHost(), [&](unsigned long i) { return expected[i]; });
  }
}

}  // namespace
