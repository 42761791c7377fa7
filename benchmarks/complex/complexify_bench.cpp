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
GPURUNTIME_BENCHMARK(complexifyPtrPtr<double>);
GPURUNTIME_BENCHMARK(complexifyPtrPtr<float>);
GPURUNTIME_BENCHMARK(complexifyPtrPtr<unsigned char>);

}  // namespace
