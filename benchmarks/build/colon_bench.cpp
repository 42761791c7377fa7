#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void colon(benchmark::State& state) {
  DeviceArray<T> out(largeCount);
  measure(state, largeCount, 0, out.bytes(), [&] {
    gpuruntime::Colon::Invoker<T>()(nullptr, largeCount, out.data(), 0, 1, static_cast<double>(largeCount - 1));
  });
}
GPURUNTIME_BENCHMARK(colon<double>);
GPURUNTIME_BENCHMARK(colon<float>);
GPURUNTIME_BENCHMARK(colon<long long>);
GPURUNTIME_BENCHMARK(colon<unsigned long long>);
GPURUNTIME_BENCHMARK(colon<int>);

template <class T>
void intColon(benchmark::State& state) {
  DeviceArray<T> out(largeCount);
  measure(state, largeCount, 0, out.bytes(),
          [&] { gpuruntime::IntColon::Invoker<T>()(nullptr, largeCount, out.data(), 0, 1); });
}
GPURUNTIME_BENCHMARK(intColon<double>);
GPURUNTIME_BENCHMARK(intColon<float>);
GPURUNTIME_BENCHMARK(intColon<long long>);
GPURUNTIME_BENCHMARK(intColon<unsigned long long>);
GPURUNTIME_BENCHMARK(intColon<int>);

void colonOfOneElement(benchmark::State& state) {
  DeviceArray<double> out(1);
  measureOneElement(state, [&] { gpuruntime::Colon::Invoker<double>()(nullptr, 1, out.data(), 0, 1, 0); });
}
GPURUNTIME_BENCHMARK_ONE(colonOfOneElement);

}  // namespace
