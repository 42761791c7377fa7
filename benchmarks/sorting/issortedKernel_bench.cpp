#include "support/sorting.hpp"

namespace {

using namespace benchsupport;

template <class T>
void isSorted(benchmark::State& state) {
  const unsigned long n = std::is_same_v<T, double2> ? largeCount / 2 : largeCount;
  DeviceArray<T> data(n);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  measure(state, n, data.bytes(), 0,
          [&] { benchmark::DoNotOptimize(typename gpuruntime::IsSortedVector::Invoker<T>()(data.data(), n)); });
}
GPURUNTIME_BENCHMARK(isSorted<double>);
GPURUNTIME_BENCHMARK(isSorted<int>);
GPURUNTIME_BENCHMARK(isSorted<unsigned char>);
GPURUNTIME_BENCHMARK(isSorted<double2>);

void isStronglySorted(benchmark::State& state) {
  DeviceArray<double> data(largeCount);
  gpuruntime::IntColon::Invoker<double>()(nullptr, largeCount, data.data(), 0, 1);
  measure(state, largeCount, data.bytes(), 0, [&] {
    benchmark::DoNotOptimize(gpuruntime::IsStronglySortedVector::Invoker<double>()(data.data(), largeCount));
  });
}
GPURUNTIME_BENCHMARK(isStronglySorted);

// Magnitudes ascend, as they do in sorted data.
void isSortedOfAscendingMagnitudes(benchmark::State& state) {
  const std::vector<double2> input = sortInput<double2>(Input::sorted);
  DeviceArray<double2> data(input.size());
  gpuruntime::recipes::copyToDevice(data.data(), input.data(), data.bytes());
  measure(state, input.size(), data.bytes(), 0,
          [&] { benchmark::DoNotOptimize(gpuruntime::IsSortedVector::Invoker<double2>()(data.data(), input.size())); });
}
GPURUNTIME_BENCHMARK(isSortedOfAscendingMagnitudes);

}  // namespace
