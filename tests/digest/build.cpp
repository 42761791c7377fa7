#include "digest.hpp"

namespace digest {
namespace {

// Several tasks, an odd end, and for the wider types large enough to be written past the caches.
constexpr unsigned long count = 600011;

template <class Family, class T>
HostArray<T> spaced(unsigned long n, T start, T stop) {
  return filled<T>(n, [&](T* out) { typename Family::template Invoker<T>()(nullptr, n, out, start, stop); });
}

template <class T>
void addSpaced(Lines& lines) {
  if constexpr (isComplex<T>) {
    lines.exact("Linspace", spaced<gpuruntime::Linspace, T>(count, T{-1, 4}, T{3, -7}));
    lines.close("Logspace", 16, spaced<gpuruntime::Logspace, T>(1001, T{-1, 0}, T{2, 3}));
  } else {
    lines.exact("Linspace", spaced<gpuruntime::Linspace, T>(count, T(-0.3), T(3.7)));
    lines.exact(
        "LinspaceOfOverflowingDifference",
        spaced<gpuruntime::Linspace, T>(count, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max()));
    lines.exact("LogspaceOfIntegers", spaced<gpuruntime::Logspace, T>(61, T(-30), T(30)));
    lines.close("Logspace", 4, spaced<gpuruntime::Logspace, T>(1001, T(-5), T(5)));
  }
}

}  // namespace

void addBuild(Lines& lines) {
  forEachType(gpuruntime::RealNumericTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("Colon", filled<T>(count, [](T* out) {
                  typename gpuruntime::Colon::Invoker<T>()(nullptr, count, out, 0.25, 1.0 / 3, 200003.5);
                }));
    lines.exact("IntColon", filled<T>(count, [](T* out) {
                  typename gpuruntime::IntColon::Invoker<T>()(nullptr, count, out, -7, 0.1);
                }));
  });
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("Eye",
                filled<T>(300 * 200, [](T* out) { typename gpuruntime::Eye::Invoker<T>()(nullptr, 200, out, 300); }));
    lines.moved("GenericOnes", filled<T>(count, [](T* out) {
                  typename gpuruntime::GenericOnes::Invoker<T>()(nullptr, count, out, HostArray<T>::counting(1)[0]);
                }));
  });
  forEachType(gpuruntime::DoubleAndIntTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("FillArrayWithRunningIndex", filled<T>(count, [](T* out) {
                  typename gpuruntime::FillArrayWithRunningIndex::Invoker<T>()(nullptr, count, out, 17, 23);
                }));
  });
  forEachType(gpuruntime::FloatTypes{}, [&](auto tag) { addSpaced<decltype(tag)>(lines); });
}

}  // namespace digest
