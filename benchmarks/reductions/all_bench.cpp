#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L>
void allOfSegments(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<bool> out(largeCount / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::All::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L, 1); });
}
GPURUNTIME_BENCHMARK(allOfSegments<double, (1 << 26)>);
GPURUNTIME_BENCHMARK(allOfSegments<bool, (1 << 20)>);

}  // namespace
