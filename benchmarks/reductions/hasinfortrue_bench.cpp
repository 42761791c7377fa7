#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L>
void hasInfOrTrueOfSegments(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<bool> out(largeCount / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::HasInf::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L); });
}
GPURUNTIME_BENCHMARK(hasInfOrTrueOfSegments<double, (1 << 26)>);

}  // namespace
