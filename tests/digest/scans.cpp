#include "digest.hpp"
#include "support/scanreference.hpp"

namespace digest {
namespace {

// Long and short segments, each with a short last one, then columns: scanned, joined, and their totals.
template <class T, class Rule, class Scan, class Adjust>
void addScans(Lines& lines, const std::string& name) {
  const testsupport::Fold folds[] = {{30000, 7001, 1, 2}, {30000, 7, 1, 3}, {30000, 50, 140, 2}};
  HostArray<T> results(100000);
  T* next = results.data();
  for (const testsupport::Fold& fold : folds) {
    GuardedArray<T> data(testsupport::scanData<Rule, T>(fold.N)), totals(fold.results());
    typename Scan::template Invoker<T>()(nullptr, totals.data(), data.data(), fold.N, fold.L, fold.S);
    typename Adjust::template Invoker<T>()(nullptr, totals.data(), data.data(), fold.N, fold.L, fold.K, fold.S);
    for (const HostArray<T>& array : {data.toHost(), totals.toHost()}) {
      next = std::copy_n(array.data(), array.size(), next);
    }
  }
  lines.exact(name, results);
}

}  // namespace

void addScans(Lines& lines) {
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) {
    using T = decltype(tag);
    addScans<T, testsupport::SumRule, gpuruntime::CumSum, gpuruntime::CumSumAdjust>(lines, "CumSum");
    addScans<T, testsupport::ProdRule, gpuruntime::CumProd, gpuruntime::CumProdAdjust>(lines, "CumProd");
  });
}

}  // namespace digest
