#include "support/reductions.hpp"
#include "digest.hpp"

namespace digest {
namespace {

using testsupport::Shape;

// The results of `call(out, in, N, L, S)` for all shapes, behind each other.
template <class Acc, class T, class Call>
HostArray<Acc> reduced(const HostArray<T>& in, const std::vector<Shape>& shapes, Call call) {
  const GuardedArray<T> input(in);
  unsigned long count = 0;
  for (const Shape& shape : shapes) count += shape.results();
  return filled<Acc>(count, [&](Acc* out) {
    for (const Shape& shape : shapes) {
      call(out, input.data(), shape.N, shape.L, shape.S);
      out += shape.results();
    }
  });
}

template <class T>
constexpr bool isOrdered = !isComplex<T> || std::is_floating_point_v<gpuruntime::RealOf<T>>;

// The tricky values in segments and columns; of two arrays of results, the positions have a line of their own.
template <class Plain, class WithIndex, class T>
void addExtremes(Lines& lines, const std::string& name) {
  const HostArray<T> tricky = testsupport::trickyValues<T>();
  const unsigned long n = tricky.size();
  const std::vector<Shape> shapes{{n, 2, 1}, {n, 5, 1}, {n, n, 1}, {n, 3, 4}};
  GuardedArray<T> values(n);
  lines.exact(name, reduced<T>(tricky, shapes, [](auto... arguments) {
                typename Plain::template Invoker<T>()(nullptr, arguments...);
              }));
  const auto withIndex = [&](double* indices, const T* in, unsigned long N, unsigned long L, unsigned long S) {
    typename WithIndex::template Invoker<T>()(nullptr, values.data(), indices, in, N, L, 2, S);
  };
  lines.exact(name + "WithIndexOf[" + typeName<T>() + "]", reduced<double>(tricky, shapes, withIndex));
}

template <class T>
void addType(Lines& lines) {
  using D = gpuruntime::DoubleOf<T>;
  const HostArray<T> numbers = testsupport::summands<T>(100003), tricky = testsupport::trickyValues<T>();
  const unsigned long n = tricky.size();
  const std::vector<Shape> folds{{100003, 1000, 1}, {1003, 20, 1}, {4200, 30, 7}};
  const std::vector<Shape> powers{{10003, 4, 1}, {9000, 3, 300}};
  const std::vector<Shape> segments{{n, 1, 1}, {n, 2, 1}, {n, n, 1}}, questions{{n, 1, 1}, {n, 2, 1}, {n, 2, 2}};
  const auto nameOf = [](const char* family) { return std::string(family) + "Of[" + typeName<T>() + "]"; };
  lines.exact("SumNative", reduced<T>(numbers, folds, [](auto... arguments) {
                typename gpuruntime::SumNative::Invoker<T>()(nullptr, arguments...);
              }));
  lines.exact(nameOf("SumAsDouble"), reduced<D>(numbers, folds, [](auto... arguments) {
                typename gpuruntime::SumAsDouble::Invoker<T>()(nullptr, arguments...);
              }));
  lines.exact("ProdNative", reduced<T>(numbers, powers, [](auto... arguments) {
                typename gpuruntime::ProdNative::Invoker<T>()(nullptr, arguments...);
              }));
  lines.exact(nameOf("ProdAsDouble"), reduced<D>(numbers, powers, [](auto... arguments) {
                typename gpuruntime::ProdAsDouble::Invoker<T>()(nullptr, arguments...);
              }));
  lines.exact(nameOf("All"), reduced<bool>(tricky, questions, [](auto... arguments) {
                typename gpuruntime::All::Invoker<T>()(nullptr, arguments...);
              }));
  lines.exact(nameOf("Any"), reduced<bool>(tricky, questions, [](auto... arguments) {
                typename gpuruntime::Any::Invoker<T>()(nullptr, arguments...);
              }));
  lines.exact(
      nameOf("CountNonZero"),
      reduced<double>(tricky, segments, [](auto* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
        typename gpuruntime::CountNonZero::Invoker<T>()(nullptr, out, in, N, L);
      }));
  if constexpr (isOrdered<T>) {
    addExtremes<gpuruntime::Min, gpuruntime::MinWithIndex, T>(lines, "Min");
    addExtremes<gpuruntime::Max, gpuruntime::MaxWithIndex, T>(lines, "Max");
  }
  if constexpr (std::is_floating_point_v<gpuruntime::RealOf<T>>) {
    lines.exact(
        nameOf("HasNaN"),
        reduced<bool>(tricky, segments, [](auto* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
          typename gpuruntime::HasNaN::Invoker<T>()(nullptr, out, in, N, L);
        }));
    lines.exact(
        nameOf("HasInf"),
        reduced<bool>(tricky, segments, [](auto* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
          typename gpuruntime::HasInf::Invoker<T>()(nullptr, out, in, N, L);
        }));
    lines.exact(
        nameOf("HasNaNOrInf"),
        reduced<bool>(tricky, segments, [](auto* out, const T* in, unsigned long N, unsigned long L, unsigned long) {
          typename gpuruntime::HasNaNOrInf::Invoker<T>()(nullptr, out, in, N, L);
        }));
  }
}

}  // namespace

void addReductions(Lines& lines) {
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) { addType<decltype(tag)>(lines); });
}

}  // namespace digest
