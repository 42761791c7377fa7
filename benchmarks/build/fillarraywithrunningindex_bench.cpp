#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void fillArrayWithRunningIndex(benchmark::State& state) {
  DeviceArray<T> out(largeCount);
  measure(state, largeCount, 0, out.bytes(),
          [&] { gpuruntime::FillArrayWithRunningIndex::Invoker<T>()(nullptr, largeCount, out.data(), 1000, 77); });
}
GPURUNTIME_BENCHMARK(fillArrayWithRunningIndex<double>);
GPURUNTIME_BENCHMARK(fillArrayWithRunningIndex<int>);

void fillArrayWithRunningIndexOfOneElement(benchmark::State& state) {
  DeviceArray<double> out(1);
  measureOneElement(state,
                    [&] { gpuruntime::FillArrayWithRunningIndex::Invoker<double>()(nullptr, 1, out.data(), 1, 1); });
}
GPURUNTIME_BENCHMARK_ONE(fillArrayWithRunningIndexOfOneElement);

}  // namespace
