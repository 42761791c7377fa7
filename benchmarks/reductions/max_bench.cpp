#include "support/extremes.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L, unsigned long S>
void maxWithIndex(benchmark::State& state) {
  DeviceArray<T> in(largeCount), values(largeCount / L);
  DeviceArray<double> indices(largeCount / L);
  fill(in);
  measureReading(state, largeCount, in.bytes(), values.bytes() + indices.bytes(), [&] {
    gpuruntime::MaxWithIndex::Invoker<T>()(nullptr, values.data(), indices.data(), in.data(), largeCount, L, 1, S);
  });
}
GPURUNTIME_BENCHMARK(maxWithIndex<double, (1 << 26), 1>);
GPURUNTIME_BENCHMARK(maxWithIndex<double, (1 << 20), 1>);
GPURUNTIME_BENCHMARK(maxWithIndex<double, 64, 1>);
GPURUNTIME_BENCHMARK(maxWithIndex<double, 4, 1>);
GPURUNTIME_BENCHMARK(maxWithIndex<double, 512, 512>);
GPURUNTIME_BENCHMARK(maxWithIndex<int, (1 << 20), 1>);
GPURUNTIME_BENCHMARK(maxWithIndex<double2, (1 << 20), 1>);

template <class T, unsigned long L, unsigned long S>
void maxOf(benchmark::State& state) {
  DeviceArray<T> in(largeCount), out(largeCount / L);
  fill(in);
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::Max::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L, S); });
}
GPURUNTIME_BENCHMARK(maxOf<double, (1 << 26), 1>);
GPURUNTIME_BENCHMARK(maxOf<double, 64, 1>);
GPURUNTIME_BENCHMARK(maxOf<double, 512, 512>);
GPURUNTIME_BENCHMARK(maxOf<signed char, (1 << 20), 1>);

}  // namespace
