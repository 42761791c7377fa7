#include "digest.hpp"

namespace digest {
namespace {

using gpuruntime::ComplexOf;
using gpuruntime::RealOf;

constexpr unsigned long count = 300007;

template <class T>
void addParts(Lines& lines) {
  using Complex = ComplexOf<T>;
  const GuardedArray<T> real(HostArray<T>::counting(count, 1)), imag(HostArray<T>::counting(count, 2));
  const T scalar = HostArray<T>::counting(1, 3)[0];
  lines.moved("ComplexifyPtrPtr", filled<Complex>(count, [&](Complex* out) {
                typename gpuruntime::ComplexifyPtrPtr::Invoker<T>()(nullptr, out, real.data(), imag.data(), count);
              }));
  lines.moved("ComplexifyPtrScalar", filled<Complex>(count, [&](Complex* out) {
                typename gpuruntime::ComplexifyPtrScalar::Invoker<T>()(nullptr, out, real.data(), scalar, count);
              }));
  lines.moved("ComplexifyScalarPtr", filled<Complex>(count, [&](Complex* out) {
                typename gpuruntime::ComplexifyScalarPtr::Invoker<T>()(nullptr, out, scalar, imag.data(), count);
              }));
}

template <class T>
void addSplit(Lines& lines) {
  using Part = RealOf<T>;
  const GuardedArray<T> in(HostArray<T>::counting(count));
  GuardedArray<Part> real(count), imag(count);
  typename gpuruntime::Decomplexify::Invoker<T>()(nullptr, real.data(), imag.data(), in.data(), count);
  lines.moved("DecomplexifyReal", real.toHost());
  lines.moved("DecomplexifyImag", imag.toHost());
  lines.moved("Real", filled<Part>(count, [&](Part* out) {
                typename gpuruntime::Real::Invoker<T>()(nullptr, out, in.data(), count);
              }));
  lines.moved("Imag", filled<Part>(count, [&](Part* out) {
                typename gpuruntime::Imag::Invoker<T>()(nullptr, out, in.data(), count);
              }));
}

template <class T>
void addPadded(Lines& lines) {
  const GuardedArray<T> in(HostArray<T>::counting(500 * 300));
  using Complex = ComplexOf<T>;
  const std::string name = isComplex<T> ? "ComplexCopyPadOfComplex" : "ComplexCopyPadOfReal";
  lines.moved(name, filled<Complex>(600 * 200, [&](Complex* out) {
                typename gpuruntime::ComplexCopyPad::Invoker<T>()(nullptr, out, 600, 200, in.data(), 500, 300);
              }));
}

}  // namespace

void addComplex(Lines& lines) {
  forEachType(gpuruntime::RealNumericTypes{}, [&](auto tag) { addParts<decltype(tag)>(lines); });
  forEachType(gpuruntime::ComplexTypes{}, [&](auto tag) { addSplit<decltype(tag)>(lines); });
  forEachType(gpuruntime::ComplexFloatTypes{}, [&](auto tag) {
    using T = decltype(tag);
    const GuardedArray<T> in(HostArray<T>::counting(count));
    lines.moved("Conj", filled<T>(count, [&](T* out) {
                  typename gpuruntime::Conj::Invoker<T>()(nullptr, out, in.data(), count);
                }));
  });
  forEachType(gpuruntime::FloatTypes{}, [&](auto tag) { addPadded<decltype(tag)>(lines); });
}

}  // namespace digest
