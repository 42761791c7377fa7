#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// Columns of 2^20 elements.
template <class T>
void cumProd(benchmark::State& state) {
  constexpr unsigned long length = 1UL << 20, count = largeCount / sizeof(T) * 4;
  DeviceArray<T> data(count), totals(count / length);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  measure(state, count, data.bytes(), data.bytes(),
          [&] { typename gpuruntime::CumProd::Invoker<T>()(nullptr, totals.data(), data.data(), count, length, 1); });
}
GPURUNTIME_BENCHMARK(cumProd<double>);
GPURUNTIME_BENCHMARK(cumProd<int>);
GPURUNTIME_BENCHMARK(cumProd<long long>);
GPURUNTIME_BENCHMARK(cumProd<double2>);

void cumProdAdjust(benchmark::State& state) {
  constexpr unsigned long length = 1UL << 20, chunks = largeCount / length;
  DeviceArray<double> data(largeCount), adjustments(chunks);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  gpuruntime::recipes::fillOnDevice(adjustments.data(), 0, adjustments.bytes());
  measure(state, largeCount, data.bytes(), data.bytes(), [&] {
    gpuruntime::CumProdAdjust::Invoker<double>()(nullptr, adjustments.data(), data.data(), largeCount, length, chunks,
                                                 1);
  });
}
GPURUNTIME_BENCHMARK(cumProdAdjust);

}  // namespace
