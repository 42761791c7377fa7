#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long L>
void prodOfSegments(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<T> out(largeCount / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(),
                 [&] { gpuruntime::ProdNative::Invoker<T>()(nullptr, out.data(), in.data(), largeCount, L, 1); });
}
GPURUNTIME_BENCHMARK(prodOfSegments<double, (1 << 26)>);
GPURUNTIME_BENCHMARK(prodOfSegments<double, 1024>);
GPURUNTIME_BENCHMARK(prodOfSegments<int, 1024>);
GPURUNTIME_BENCHMARK(prodOfSegments<double2, 1024>);

constexpr unsigned long asDoubleLength = 1UL << 20;
void prodAsDouble(benchmark::State& state) {
  DeviceArray<int> in(largeCount);
  DeviceArray<double> out(largeCount / asDoubleLength);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(), [&] {
    gpuruntime::ProdAsDouble::Invoker<int>()(nullptr, out.data(), in.data(), largeCount, asDoubleLength, 1);
  });
}
GPURUNTIME_BENCHMARK(prodAsDouble);

}  // namespace
