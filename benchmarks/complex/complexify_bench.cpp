#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void complexifyPtrPtr(benchmark::State& state) {
  DeviceArray<T> real(largeCount), imag(largeCount);
  DeviceArray<gpuruntime::ComplexOf<T>> out(largeCount);
  gpuruntime::recipes::fillOnDevice(real.data(), 1, real.bytes());
  gpuruntime::recipes::fillOnDevice(imag.data(), 2, imag.bytes());
  measure(state, largeCount, out.bytes(), out.bytes(), [&] {
    gpuruntime::ComplexifyPtrPtr::Invoker<T>()(nullptr, out.data(), real.data(), imag.data(), largeCount);
  });
}
// One part is the same for all elements.
void complexifyPtrScalar(benchmark::State& state) {
  DeviceArray<double> real(largeCount);
  DeviceArray<double2> out(largeCount);
  gpuruntime::recipes::fillOnDevice(real.data(), 1, real.bytes());
  measure(state, largeCount, real.bytes(), out.bytes(), [&] {
    gpuruntime::ComplexifyPtrScalar::Invoker<double>()(nullptr, out.data(), real.data(), 2.0, largeCount);
  });
}
void complexifyScalarPtr(benchmark::State& state) {
  DeviceArray<double> imag(largeCount);
  DeviceArray<double2> out(largeCount);
  gpuruntime::recipes::fillOnDevice(imag.data(), 1, imag.bytes());
  measure(state, largeCount, imag.bytes(), out.bytes(), [&] {
    gpuruntime::ComplexifyScalarPtr::Invoker<double>()(nullptr, out.data(), 2.0, imag.data(), largeCount);
  });
}
GPURUNTIME_BENCHMARK(complexifyPtrPtr<double>);
GPURUNTIME_BENCHMARK(complexifyPtrPtr<float>);
GPURUNTIME_BENCHMARK(complexifyPtrPtr<unsigned char>);
GPURUNTIME_BENCHMARK(complexifyPtrScalar);
GPURUNTIME_BENCHMARK(complexifyScalarPtr);

}  // namespace
