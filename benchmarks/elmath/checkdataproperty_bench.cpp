#include "support/bench.hpp"

namespace {

using namespace benchsupport;

void checkNaN(benchmark::State& state) {
  DeviceArray<double> data(largeCount);
  gpuruntime::recipes::fillOnDevice(data.data(), 1, data.bytes());
  measure(state, largeCount, data.bytes(), 0,
          [&] { gpuruntime::CheckNaN::Invoker<double>()(nullptr, data.data(), largeCount); });
}
void checkNotStronglySortedAscending(benchmark::State& state) {
  DeviceArray<double> data(largeCount);
  gpuruntime::IntColon::Invoker<double>()(nullptr, largeCount, data.data(), 0, 1);
  measure(state, largeCount, data.bytes(), 0,
          [&] { gpuruntime::CheckNotStronglySortedAscending::Invoker<double>()(nullptr, data.data(), largeCount); });
}
GPURUNTIME_BENCHMARK(checkNaN);
GPURUNTIME_BENCHMARK(checkNotStronglySortedAscending);

}  // namespace
