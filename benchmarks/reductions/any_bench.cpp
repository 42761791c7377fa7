#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L>
void anyOfSegments(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<bool> out(largeCount / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::Any::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L, 1); });
}
GPURUNTIME_BENCHMARK(anyOfSegments<double, (1 << 26)>);
GPURUNTIME_BENCHMARK(anyOfSegments<double, (1 << 20)>);
GPURUNTIME_BENCHMARK(anyOfSegments<double, 1024>);
GPURUNTIME_BENCHMARK(anyOfSegments<double, 64>);
GPURUNTIME_BENCHMARK(anyOfSegments<double, 4>);
GPURUNTIME_BENCHMARK(anyOfSegments<unsigned char, (1 << 26)>);

template <class T, unsigned long L, unsigned long S>
void anyOfColumns(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<bool> out(largeCount / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::Any::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L, S); });
}
GPURUNTIME_BENCHMARK(anyOfColumns<double, 512, 512>);
GPURUNTIME_BENCHMARK(anyOfColumns<double, 256, 512 * 512>);

}  // namespace
