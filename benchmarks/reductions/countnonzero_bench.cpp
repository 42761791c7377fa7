#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L>
void countNonZeroOfSegments(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<double> out(largeCount / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::CountNonZero::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L); });
}
GPURUNTIME_BENCHMARK(countNonZeroOfSegments<double, (1 << 26)>);
GPURUNTIME_BENCHMARK(countNonZeroOfSegments<unsigned char, 1024>);

}  // namespace
