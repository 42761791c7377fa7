#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void genericOnes(benchmark::State& state) {
  DeviceArray<T> out(largeCount);
  measure(state, largeCount, 0, out.bytes(),
          [&] { gpuruntime::GenericOnes::Invoker<T>()(nullptr, largeCount, out.data(), T{}); });
}
GPURUNTIME_BENCHMARK(genericOnes<double>);
GPURUNTIME_BENCHMARK(genericOnes<unsigned char>);
GPURUNTIME_BENCHMARK(genericOnes<short>);
GPURUNTIME_BENCHMARK(genericOnes<float>);
GPURUNTIME_BENCHMARK(genericOnes<double2>);

void genericOnesOfOneElement(benchmark::State& state) {
  DeviceArray<double> out(1);
  measureOneElement(state, [&] { gpuruntime::GenericOnes::Invoker<double>()(nullptr, 1, out.data(), 1); });
}
GPURUNTIME_BENCHMARK_ONE(genericOnesOfOneElement);

}  // namespace
