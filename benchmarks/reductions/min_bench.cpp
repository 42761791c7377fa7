#include "support/extremes.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L, unsigned long S>
void minWithIndex(benchmark::State& state) {
  DeviceArray<T> in(largeCount), values(largeCount / L);
  DeviceArray<double> indices(largeCount / L);
  fill(in);
  measureReading(state, largeCount, in.bytes(), values.bytes() + indices.bytes(), [&] {
    gpuruntime::MinWithIndex::Invoker<T>()(nullptr, values.data(), indices.data(), in.data(), largeCount, L, 1, S);
  });
}
GPURUNTIME_BENCHMARK(minWithIndex<double, (1 << 26), 1>);
GPURUNTIME_BENCHMARK(minWithIndex<double, (1 << 20), 1>);
GPURUNTIME_BENCHMARK(minWithIndex<double, 64, 1>);
GPURUNTIME_BENCHMARK(minWithIndex<double, 4, 1>);
GPURUNTIME_BENCHMARK(minWithIndex<double, 512, 512>);
GPURUNTIME_BENCHMARK(minWithIndex<int, (1 << 20), 1>);
GPURUNTIME_BENCHMARK(minWithIndex<double2, (1 << 20), 1>);

template <class T, unsigned long L, unsigned long S>
void minOf(benchmark::State& state) {
  DeviceArray<T> in(largeCount), out(largeCount / L);
  fill(in);
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::Min::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L, S); });
}
GPURUNTIME_BENCHMARK(minOf<double, (1 << 26), 1>);
GPURUNTIME_BENCHMARK(minOf<double, 64, 1>);
GPURUNTIME_BENCHMARK(minOf<double, 512, 512>);
GPURUNTIME_BENCHMARK(minOf<signed char, (1 << 20), 1>);

}  // namespace
