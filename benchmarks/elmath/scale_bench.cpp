#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void scaleInplace(benchmark::State& state) {
  DeviceArray<T> data(largeCount);
  gpuruntime::recipes::fillOnDevice(data.data(), 0x41, data.bytes());
  T s{};
  reinterpret_cast<gpuruntime::RealOf<T>&>(s) = 1;
  measure(state, largeCount, data.bytes(), data.bytes(),
          [&] { typename gpuruntime::ScaleInplace::Invoker<T>()(nullptr, data.data(), s, largeCount); });
}
GPURUNTIME_BENCHMARK(scaleInplace<double>);
GPURUNTIME_BENCHMARK(scaleInplace<float>);
GPURUNTIME_BENCHMARK(scaleInplace<double2>);

void scaleByDoubleInplace(benchmark::State& state) {
  DeviceArray<float> data(largeCount);
  gpuruntime::recipes::fillOnDevice(data.data(), 0x41, data.bytes());
  measure(state, largeCount, data.bytes(), data.bytes(),
          [&] { gpuruntime::ScaleByDoubleInplace::Invoker<float>()(nullptr, data.data(), 1.0, largeCount); });
}
GPURUNTIME_BENCHMARK(scaleByDoubleInplace);

}  // namespace
