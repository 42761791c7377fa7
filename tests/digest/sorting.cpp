#include "digest.hpp"
#include "support/sortreference.hpp"

namespace digest {
namespace {

template <class T>
void addType(Lines& lines) {
  constexpr unsigned long n = 270001, rows = 541;
  const std::vector<HostArray<T>> inputs = testsupport::sortInputs<T>(n);
  for (const bool ascending : {true, false}) {
    const std::string direction = ascending ? "Ascending" : "Descending";
    // Few distinct values with an index tell whether the sort is stable, the last but one input has values of all
    // sizes.
    GuardedArray<T> few(inputs[0]), any(inputs[inputs.size() > 4 ? inputs.size() - 2 : 3]), columns(inputs[0]);
    GuardedArray<double> index(HostArray<double>::counting(n));
    HostArray<int> keys(n);
    for (unsigned long i = 0; i < n; ++i) keys[i] = static_cast<int>(i / rows);
    GuardedArray<int> deviceKeys(keys);
    gpuruntime::SortVector::Invoker<T>()(few.data(), index.data(), n, ascending);
    gpuruntime::SortVector::Invoker<T>()(any.data(), nullptr, n, ascending);
    gpuruntime::SortMatrix::Invoker<T>()(columns.data(), nullptr, deviceKeys.data(), n, ascending);
    lines.moved("SortVectorIndex" + direction + "Of" + typeName<T>(), index.toHost());
    lines.moved("SortVector" + direction, any.toHost());
    lines.moved("SortMatrix" + direction, columns.toHost());
  }
}

}  // namespace

void addSorting(Lines& lines) {
  forEachType(gpuruntime::SortTypes{}, [&](auto tag) { addType<decltype(tag)>(lines); });
}

}  // namespace digest
