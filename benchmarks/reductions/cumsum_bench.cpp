#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// N elements, L of them S apart to a column.
template <class T, unsigned long N, unsigned long L, unsigned long S = 1>
void cumSum(benchmark::State& state) {
  DeviceArray<T> data(N), totals(N / L);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  measure(state, N, data.bytes(), data.bytes(),
          [&] { typename gpuruntime::CumSum::Invoker<T>()(nullptr, totals.data(), data.data(), N, L, S); });
}
constexpr unsigned long K = 1UL << 10, M = 1UL << 20;
#define GPURUNTIME_BENCHMARK_SHAPES(T)               \
  GPURUNTIME_BENCHMARK(cumSum<T, 64 * M, 64 * M>);   \
  GPURUNTIME_BENCHMARK(cumSum<T, 64 * M, M>);        \
  GPURUNTIME_BENCHMARK(cumSum<T, 64 * M, 64>);       \
  GPURUNTIME_BENCHMARK(cumSum<T, 16 * M, 4 * M>);    \
  GPURUNTIME_BENCHMARK(cumSum<T, 16 * M, 4>);        \
  GPURUNTIME_BENCHMARK(cumSum<T, 64 * M, 512>);      \
  GPURUNTIME_BENCHMARK(cumSum<T, 64 * M, 512, 512>); \
  GPURUNTIME_BENCHMARK(cumSum<T, 64 * M, 256, 256 * K>)
GPURUNTIME_BENCHMARK_SHAPES(double);
GPURUNTIME_BENCHMARK_SHAPES(int);
GPURUNTIME_BENCHMARK_SHAPES(double2);
// Segments that fill no tree.
GPURUNTIME_BENCHMARK(cumSum<double, 3 * 16 * M, 3>);
GPURUNTIME_BENCHMARK(cumSum<double, 100 * 512 * K, 100>);
GPURUNTIME_BENCHMARK(cumSum<double, 64 * M, M, 2>);
GPURUNTIME_BENCHMARK(cumSum<signed char, 64 * M, M>);

void cumSumAdjust(benchmark::State& state) {
  DeviceArray<double> data(64 * M), adjustments(64);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  gpuruntime::recipes::fillOnDevice(adjustments.data(), 0, adjustments.bytes());
  measure(state, 64 * M, data.bytes(), data.bytes(), [&] {
    gpuruntime::CumSumAdjust::Invoker<double>()(nullptr, adjustments.data(), data.data(), 64 * M, M, 64, 1);
  });
}
GPURUNTIME_BENCHMARK(cumSumAdjust);

void cumSumOfOneElement(benchmark::State& state) {
  DeviceArray<double> data(1), total(1);
  measureOneElement(state, [&] { gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), data.data(), 1, 1, 1); });
}
GPURUNTIME_BENCHMARK_ONE(cumSumOfOneElement);

}  // namespace
