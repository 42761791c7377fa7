#include "digest.hpp"

namespace digest {
namespace {

constexpr unsigned long rows = 1037, columns = 521, pages = 2;

template <class T, class Call>
HostArray<T> turned(Call call) {
  const GuardedArray<T> in(HostArray<T>::counting(rows * columns * pages));
  GuardedArray<T> out(rows * columns * pages);
  call(out.data(), in.data());
  return out.toHost();
}

template <class T>
void addCopies(Lines& lines) {
  const GuardedArray<T> in(HostArray<T>::counting(rows * columns));
  const auto add = [&](const char* name, unsigned long size, auto call) {
    lines.moved(name, filled<T>(size, [&](T* out) { call(out, in.data()); }));
  };
  add("RepmatColumnVector", rows * columns * pages, [](T* out, const T* from) {
    typename gpuruntime::RepmatColumnVector::Invoker<T>()(nullptr, out, from, rows, columns * pages);
  });
  add("RepmatRowVector", rows * columns * pages, [](T* out, const T* from) {
    typename gpuruntime::RepmatRowVector::Invoker<T>()(nullptr, out, from, columns, rows, pages);
  });
  add("RepmatMatrixRows", rows * columns * pages, [](T* out, const T* from) {
    typename gpuruntime::RepmatMatrixRows::Invoker<T>()(nullptr, out, from, rows, columns, pages);
  });
  add("DiagMatToVec", columns, [](T* out, const T* from) {
    typename gpuruntime::DiagMatToVec::Invoker<T>()(nullptr, out, from, rows, -7, columns);
  });
  add("DiagVecToMat", rows * columns, [](T* out, const T* from) {
    typename gpuruntime::DiagVecToMat::Invoker<T>()(nullptr, out, from, rows, 7, columns - 7);
  });
  add("TriLower", rows * columns,
      [](T* out, const T* from) { typename gpuruntime::TriLower::Invoker<T>()(nullptr, out, from, 3, rows, columns); });
  add("TriLowerOneOnDiag", rows * columns, [](T* out, const T* from) {
    typename gpuruntime::TriLowerOneOnDiag::Invoker<T>()(nullptr, out, from, -3, rows, columns);
  });
  add("TriUpper", rows * columns,
      [](T* out, const T* from) { typename gpuruntime::TriUpper::Invoker<T>()(nullptr, out, from, 3, rows, columns); });
}

template <class T>
void addType(Lines& lines) {
  lines.moved("Transpose", turned<T>([](T* out, const T* in) {
                typename gpuruntime::Transpose::Invoker<T>()(nullptr, out, in, rows, columns * pages);
              }));
  lines.moved("CTranspose", turned<T>([](T* out, const T* in) {
                typename gpuruntime::CTranspose::Invoker<T>()(nullptr, out, in, rows, columns * pages);
              }));
  for (const unsigned long last : {1UL, 2UL}) {  // Orders (3 2 1) and (1 3 2): tiles and runs.
    const unsigned long from[] = {rows, columns, pages}, order[] = {last == 1 ? 3UL : 1UL, last == 1 ? 2UL : 3UL, last};
    const unsigned long to[] = {from[order[0] - 1], from[order[1] - 1], from[order[2] - 1]};
    lines.moved(last == 1 ? "Permute321" : "Permute132", turned<T>([&](T* out, const T* in) {
                  typename gpuruntime::Permute::Invoker<T>()(nullptr, out, 3, to, in, 3, from, 3, order);
                }));
  }
  for (const bool clockwise : {true, false}) {
    lines.moved(clockwise ? "Rot90Clockwise" : "Rot90CounterClockwise", turned<T>([=](T* out, const T* in) {
                  typename gpuruntime::Rot90::Invoker<T>()(nullptr, out, in, rows, columns, pages, clockwise);
                }));
  }
}

}  // namespace

void addElmath(Lines& lines) {
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) {
    addType<decltype(tag)>(lines);
    addCopies<decltype(tag)>(lines);
  });
}

}  // namespace digest
