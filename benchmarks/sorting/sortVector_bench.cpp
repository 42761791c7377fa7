#include <numeric>

#include "support/sorting.hpp"

namespace {

using namespace benchsupport;

template <class T, Input INPUT, bool WITH_INDEX>
void sortVector(benchmark::State& state) {
  measureSort(state, sortInput<T>(INPUT), [](T* data, double* index) {
    gpuruntime::SortVector::Invoker<T>()(data, WITH_INDEX ? index : nullptr, sortCount, true);
  });
}
#define GPURUNTIME_BENCHMARK_INPUTS(T, WITH_INDEX)                  \
  GPURUNTIME_BENCHMARK(sortVector<T, Input::random, WITH_INDEX>);   \
  GPURUNTIME_BENCHMARK(sortVector<T, Input::sorted, WITH_INDEX>);   \
  GPURUNTIME_BENCHMARK(sortVector<T, Input::reversed, WITH_INDEX>); \
  GPURUNTIME_BENCHMARK(sortVector<T, Input::fewValues, WITH_INDEX>)
GPURUNTIME_BENCHMARK_INPUTS(double, false);
GPURUNTIME_BENCHMARK_INPUTS(double, true);
GPURUNTIME_BENCHMARK_INPUTS(long long, false);
GPURUNTIME_BENCHMARK_INPUTS(long long, true);
GPURUNTIME_BENCHMARK_INPUTS(double2, false);
GPURUNTIME_BENCHMARK_INPUTS(double2, true);
GPURUNTIME_BENCHMARK(sortVector<double, Input::someNaN, false>);
GPURUNTIME_BENCHMARK(sortVector<double, Input::someNaN, true>);
GPURUNTIME_BENCHMARK(sortVector<double2, Input::someNaN, true>);

// What the same takes by the standard library, on one core.
template <Input INPUT>
void stableSort(benchmark::State& state) {
  const std::vector<double> input = sortInput<double>(INPUT);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<double> data = input;
    state.ResumeTiming();
    std::stable_sort(data.begin(), data.end());
    benchmark::DoNotOptimize(data.data());
  }
}
GPURUNTIME_BENCHMARK(stableSort<Input::random>);
GPURUNTIME_BENCHMARK(stableSort<Input::sorted>);
GPURUNTIME_BENCHMARK(stableSort<Input::reversed>);
GPURUNTIME_BENCHMARK(stableSort<Input::fewValues>);

template <Input INPUT>
void stableSortOfIndex(benchmark::State& state) {
  const std::vector<double> data = sortInput<double>(INPUT);
  std::vector<unsigned int> index(sortCount);
  for (auto _ : state) {
    state.PauseTiming();
    std::iota(index.begin(), index.end(), 0U);
    state.ResumeTiming();
    std::stable_sort(index.begin(), index.end(), [&](unsigned int a, unsigned int b) { return data[a] < data[b]; });
    benchmark::DoNotOptimize(index.data());
  }
}
GPURUNTIME_BENCHMARK(stableSortOfIndex<Input::random>);
GPURUNTIME_BENCHMARK(stableSortOfIndex<Input::fewValues>);

void simpleSort(benchmark::State& state) {
  measureSort(state, sortInput<double>(Input::random),
              [](double* data, double*) { gpuruntime::SimpleSort::Invoker<double>()(data, sortCount); });
}
GPURUNTIME_BENCHMARK(simpleSort);

void sortOfOneElement(benchmark::State& state) {
  DeviceArray<double> data(1);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  measureOneElement(state, [&] { gpuruntime::SortVector::Invoker<double>()(data.data(), nullptr, 1, true); });
}
GPURUNTIME_BENCHMARK_ONE(sortOfOneElement);

}  // namespace
