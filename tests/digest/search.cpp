#include "digest.hpp"
#include "support/trickyvalues.hpp"

namespace digest {
namespace {

using gpuruntime::FindFirstLast;

constexpr unsigned long rows = 347, columns = 29, n = rows * columns;

/// About every third element is 0.
template <class T>
HostArray<T> sparse() {
  HostArray<T> array = HostArray<T>::counting(n, 7);
  for (unsigned long i = 0; i < n; i += 1 + i % 5) std::memset(&array[i], 0, sizeof(T));
  return array;
}

template <class T>
void addFind(Lines& lines) {
  const GuardedArray<T> input(sparse<T>());
  GuardedArray<double> prefix(n), total(1);
  typename gpuruntime::FlagNonZero::Invoker<T>()(nullptr, prefix.data(), input.data(), n);
  gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), prefix.data(), n, n, 1);
  const auto k = static_cast<unsigned long>(total.toHost()[0]) / 2;
  for (const FindFirstLast mode : {FindFirstLast::first, FindFirstLast::last}) {
    const std::string name = std::string(mode == FindFirstLast::first ? "First" : "Last") + "Of" + typeName<T>();
    GuardedArray<double> positions(k), row(k), column(k);
    GuardedArray<T> values(k);
    typename gpuruntime::Find1D::Invoker<T>()(nullptr, positions.data(), input.data(), prefix.data(), k, n, mode);
    lines.exact("Find1D" + name, positions.toHost());
    typename gpuruntime::Find2DWithValue::Invoker<T>()(nullptr, row.data(), column.data(), values.data(), input.data(),
                                                       prefix.data(), k, rows, columns, mode);
    lines.exact("Find2DWithValueRows" + name, row.toHost());
    lines.moved("Find2DWithValue" + name, values.toHost());
    typename gpuruntime::Find2D::Invoker<T>()(nullptr, row.data(), column.data(), input.data(), prefix.data(), k, rows,
                                              columns, mode);
    lines.exact("Find2D" + name, column.toHost());
  }
}

/// Whole numbers from -200 to 199, and halves between them.
HostArray<double> smallNumbers(unsigned long count, unsigned int seed) {
  HostArray<double> numbers(count);
  std::minstd_rand next(seed);
  for (unsigned long i = 0; i < count; ++i) numbers[i] = static_cast<double>(next() / 7 % 800) / 2 - 200;
  return numbers;
}

template <class T>
void addMembers(Lines& lines) {
  GuardedArray<double> B(smallNumbers(211, 5)), indexB(smallNumbers(211, 6)), location(n);
  gpuruntime::SortVector::Invoker<double>()(B.data(), indexB.data(), 211, true);
  HostArray<T> queries(n);
  const HostArray<double> numbers = smallNumbers(n, 8);
  for (unsigned long i = 0; i < n; ++i) queries[i] = static_cast<T>(std::fabs(numbers[i]) / 2);
  const GuardedArray<T> A(queries);
  GuardedArray<bool> member(n);
  gpuruntime::IsMember1Arg::Invoker<T>()(A.data(), n, B.data(), 211, member.data());
  lines.moved(std::string("IsMember1ArgOf") + typeName<T>(), member.toHost());
  gpuruntime::IsMember2Arg::Invoker<T>()(nullptr, A.data(), n, B.data(), 211, indexB.data(), member.data(),
                                         location.data());
  lines.exact(std::string("IsMember2ArgOf") + typeName<T>(), location.toHost());
}

template <class T>
void addComplexMembers(Lines& lines) {
  constexpr unsigned long count = 5000;
  const auto pairs = [](unsigned int seed) {
    const HostArray<double> parts = smallNumbers(2 * count, seed);
    HostArray<double2> result(count);
    for (unsigned long i = 0; i < count; ++i) result[i] = {parts[2 * i], std::trunc(parts[2 * i + 1] / 20)};
    return result;
  };
  const GuardedArray<double2> A(pairs(11)), B(pairs(12));
  GuardedArray<bool> member(count);
  GuardedArray<double> location(count);
  typename gpuruntime::IsMember1ArgCmplx::Invoker<T>()(nullptr, A.data(), count, B.data(), count, member.data());
  lines.moved(std::string("IsMember1ArgCmplxOf") + typeName<T>(), member.toHost());
  typename gpuruntime::IsMember2ArgCmplx::Invoker<T>()(nullptr, A.data(), count, B.data(), count, member.data(),
                                                       location.data());
  lines.exact(std::string("IsMember2ArgCmplxOf") + typeName<T>(), location.toHost());
}

}  // namespace

void addSearch(Lines& lines) {
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) { addFind<decltype(tag)>(lines); });
  forEachType(gpuruntime::MemberTypes{}, [&](auto tag) { addMembers<decltype(tag)>(lines); });
  forEachType(gpuruntime::ComplexMemberTypes{}, [&](auto tag) { addComplexMembers<decltype(tag)>(lines); });
  const GuardedArray<double> subscripts(testsupport::arrayOf<double>({3, 1e15, 7}));
  const auto answer = gpuruntime::CheckValidFindMax::Invoker<double>()(subscripts.data(), 3);
  lines.exact("CheckValidFindMax", testsupport::arrayOf<double>({answer.first ? 1.0 : 0.0, answer.second}));
}

}  // namespace digest
