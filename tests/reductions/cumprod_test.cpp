#include "support/scanreference.hpp"

namespace {

using namespace testsupport;
using gpuruntime::CumProd;
using gpuruntime::CumProdAdjust;

template <class T>
struct CumProdTest : ::testing::Test {};
TYPED_TEST_SUITE(CumProdTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(CumProdTest, DoesTheStatedOperationsInTheirOrder) {
  expectScans<CumProd, CumProdAdjust, ProdRule, TypeParam>(scanFolds());
}

// Ones behind an element take part in its tree as the identities of a short segment do: whatever the element is, the
// segments of 1 and of 256 have one total.
TEST(CumProd, CombinesShortSegmentsWithTheIdentity) {
  const HostArray<double2> elements = trickyValues<double2>();
  const unsigned long count = elements.size();
  std::vector<double2> padded(256 * count, double2{1, 0});
  for (unsigned long i = 0; i < count; ++i) padded[256 * i] = elements[i];
  GuardedArray<double2> data(elements), longData(arrayOf(padded)), totals(count), longTotals(count);
  CumProd::Invoker<double2>()(nullptr, totals.data(), data.data(), count, 1, 1);
  CumProd::Invoker<double2>()(nullptr, longTotals.data(), longData.data(), 256 * count, 256, 1);
  const HostArray<double2> expected = withPlainNaNs(longTotals.toHost());
  expectElements(withPlainNaNs(totals.toHost()), [&](unsigned long i) { return expected[i]; });
}

}  // namespace
