#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void decomplexify(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<gpuruntime::RealOf<T>> real(largeCount), imag(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), in.bytes(),
          [&] { gpuruntime::Decomplexify::Invoker<T>()(nullptr, real.data(), imag.data(), in.data(), largeCount); });
}
GPURUNTIME_BENCHMARK(decomplexify<double2>);
GPURUNTIME_BENCHMARK(decomplexify<float2>);

}  // namespace
