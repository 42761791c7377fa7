#include "support/sorting.hpp"

namespace {

using namespace benchsupport;

template <class T, bool WITH_INDEX>
void sortColumns(benchmark::State& state) {
  constexpr unsigned long side = 4096, n = side * side;
  std::vector<int> columns(n);
  for (unsigned long i = 0; i < n; ++i) columns[i] = static_cast<int>(i / side);
  DeviceArray<int> keys(n);
  gpuruntime::recipes::copyToDevice(keys.data(), columns.data(), keys.bytes());  // They come out as they go in.
  measureSort(state, sortInput<T>(Input::random, n), [&](T* data, double* index) {
    gpuruntime::SortMatrix::Invoker<T>()(data, WITH_INDEX ? index : nullptr, keys.data(), n, true);
  });
}
GPURUNTIME_BENCHMARK(sortColumns<double, false>);
GPURUNTIME_BENCHMARK(sortColumns<double, true>);
GPURUNTIME_BENCHMARK(sortColumns<long long, true>);
GPURUNTIME_BENCHMARK(sortColumns<double2, true>);

void stableSortOfColumns(benchmark::State& state) {
  constexpr unsigned long side = 4096;
  const std::vector<double> input = sortInput<double>(Input::random, side * side);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<double> data = input;
    state.ResumeTiming();
    for (auto column = data.begin(); column != data.end(); column += side) std::stable_sort(column, column + side);
    benchmark::DoNotOptimize(data.data());
  }
}
GPURUNTIME_BENCHMARK(stableSortOfColumns);

}  // namespace
