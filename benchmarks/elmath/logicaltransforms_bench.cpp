#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void isNaN(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<bool> out(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { typename gpuruntime::IsNaN::Invoker<T>()(nullptr, out.data(), in.data(), largeCount); });
}
GPURUNTIME_BENCHMARK(isNaN<double>);
GPURUNTIME_BENCHMARK(isNaN<float2>);

}  // namespace
