#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class Family>
void check(benchmark::State& state) {
  DeviceArray<double> data(largeCount);
  gpuruntime::recipes::fillOnDevice(data.data(), 1, data.bytes());
  measureReading(state, largeCount, data.bytes(), 0,
                 [&] { typename Family::template Invoker<double>()(nullptr, data.data(), largeCount); });
}
void checkNaN(benchmark::State& state) {
  check<gpuruntime::CheckNaN>(state);
}
void checkInf(benchmark::State& state) {
  check<gpuruntime::CheckInf>(state);
}
void checkNotFinite(benchmark::State& state) {
  check<gpuruntime::CheckNotFinite>(state);
}
void checkNotStronglySortedAscending(benchmark::State& state) {
  DeviceArray<double> data(largeCount);
  gpuruntime::IntColon::Invoker<double>()(nullptr, largeCount, data.data(), 0, 1);
  measureReading(state, largeCount, data.bytes(), 0, [&] {
    gpuruntime::CheckNotStronglySortedAscending::Invoker<double>()(nullptr, data.data(), largeCount);
  });
}
GPURUNTIME_BENCHMARK(checkNaN);
GPURUNTIME_BENCHMARK(checkInf);
GPURUNTIME_BENCHMARK(checkNotFinite);
GPURUNTIME_BENCHMARK(checkNotStronglySortedAscending);

}  // namespace
