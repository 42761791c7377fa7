#include "digest.hpp"
#include "support/subscripts.hpp"

namespace digest {
namespace {

using testsupport::Subscripted;

constexpr unsigned long rows = 67, columns = 21, pages = 5;

/// The results of a family for all kinds of subscript, one behind the other: `call(subscripted, kinds)` gives them for
/// one. No place is chosen twice, so that an assignment has one result.
template <class T, class Call>
HostArray<T> ofAllKinds(Call call) {
  HostArray<T> all(100000);
  T* next = all.data();
  testsupport::forEachKinds(gpuruntime::AllSubscriptKinds{}, [&](auto kinds) {
    const HostArray<T> results = call(kinds);
    next = std::copy_n(results.data(), results.size(), next);
  });
  return all;
}

template <class T, class I1, class I2, class I3>
HostArray<T> gathered(gpuruntime::SubscriptKinds<I1, I2, I3>) {
  const Subscripted<I1, I2, I3> subscripted{{rows, 1}, {columns, 1}, {pages, 1}};
  const GuardedArray<T> input(HostArray<T>::counting(rows * columns * pages));
  return filled<T>(subscripted.places().size(), [&](T* out) {
    subscripted.call(typename gpuruntime::Subsref3D<I1, I2, I3>::template Invoker<T>(), out, input.data(), true);
  });
}

template <class Invoker, class T, class Source, class I1, class I2, class I3>
HostArray<T> assigned(const HostArray<T>& before, Source source, gpuruntime::SubscriptKinds<I1, I2, I3>) {
  const Subscripted<I1, I2, I3> subscripted{{rows, 1}, {columns, 1}, {pages, 1}};
  GuardedArray<T> destination(before);
  subscripted.call(Invoker(), destination.data(), source, true);
  return destination.toHost();
}

template <class T, class I1, class I2, class I3>
HostArray<T> scattered(bool isArray, gpuruntime::SubscriptKinds<I1, I2, I3> kinds) {
  using gpuruntime::Subsasgn3D, gpuruntime::SubsasgnScalar3D;
  const HostArray<T> before = HostArray<T>::counting(rows * columns * pages, 2);
  const GuardedArray<T> source(HostArray<T>::counting(rows * columns * pages));
  const T value = HostArray<T>::counting(1, 3)[0];
  return isArray ? assigned<typename Subsasgn3D<I1, I2, I3>::template Invoker<T>>(before, source.data(), kinds)
                 : assigned<typename SubsasgnScalar3D<I1, I2, I3>::template Invoker<T>>(before, value, kinds);
}

template <class T>
void addMoves(Lines& lines) {
  lines.moved("Subsref3D", ofAllKinds<T>([](auto kinds) { return gathered<T>(kinds); }));
  lines.moved("Subsasgn3D", ofAllKinds<T>([](auto kinds) { return scattered<T>(true, kinds); }));
  lines.moved("SubsasgnScalar3D", ofAllKinds<T>([](auto kinds) { return scattered<T>(false, kinds); }));

  const GuardedArray<T> matrix(HostArray<T>::counting(rows * columns));
  HostArray<double> indices(rows);
  for (unsigned long i = 0; i < rows; ++i) indices[i] = static_cast<double>(i * i % columns) + 1.5;
  const GuardedArray<double> index(indices);
  lines.moved("SelectFromRows", filled<T>(rows, [&](T* out) {
                typename gpuruntime::SelectFromRows::Invoker<T>()(nullptr, rows, out, matrix.data(), index.data(),
                                                                  rows);
              }));
  lines.moved("SelectFromColumns", filled<T>(rows, [&](T* out) {
                typename gpuruntime::SelectFromColumns::Invoker<T>()(nullptr, rows, out, matrix.data(), index.data(),
                                                                     columns);
              }));
}

void addConversions(Lines& lines) {
  constexpr unsigned long n = 10000;
  HostArray<double> values(3 * n);
  for (unsigned long i = 0; i < 3 * n; ++i) values[i] = 1.25 * static_cast<double>(i * i % 10007) - 3;
  const GuardedArray<double> input(values);
  const double* in = input.data();
  const auto add = [&](const char* name, auto call) { lines.exact(name, filled<double>(3 * n, call)); };
  using namespace gpuruntime;
  add("Sub2Ind2D", [&](double* out) { Sub2Ind2D::Invoker<double>()(nullptr, n, out, in, in + n, 77); });
  add("Sub2Ind3D", [&](double* out) { Sub2Ind3D::Invoker<double>()(nullptr, n, out, in, in + n, in + 2 * n, 77, 9); });
  add("Sub2Ind2DChecked",
      [&](double* out) { Sub2Ind2DChecked::Invoker<double>()(nullptr, n, out, in, in + n, 77, 9); });
  add("Sub2Ind3DChecked",
      [&](double* out) { Sub2Ind3DChecked::Invoker<double>()(nullptr, n, out, in, in + n, in + 2 * n, 77, 9, 5); });
  add("Ind2Sub2D", [&](double* out) { Ind2Sub2D::Invoker<double>()(nullptr, n, out, out + n, in, 77); });
  add("Ind2Sub3D",
      [&](double* out) { Ind2Sub3D::Invoker<double>()(nullptr, n, out, out + n, out + 2 * n, in, 77, 9); });
  lines.exact("IndexValidation",
              filled<bool>(3 * n, [&](bool* out) { IndexValidation::Invoker<double>()(nullptr, 3 * n, out, in); }));
}

}  // namespace

void addIndexing(Lines& lines) {
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) { addMoves<decltype(tag)>(lines); });
  addConversions(lines);
}

}  // namespace digest
