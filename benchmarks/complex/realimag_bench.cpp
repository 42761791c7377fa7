#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class Family, class T>
void onePart(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<gpuruntime::RealOf<T>> out(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { typename Family::template Invoker<T>()(nullptr, out.data(), in.data(), largeCount); });
}
void realDouble2(benchmark::State& state) {
  onePart<gpuruntime::Real, double2>(state);
}
void imagFloat2(benchmark::State& state) {
  onePart<gpuruntime::Imag, float2>(state);
}
GPURUNTIME_BENCHMARK(realDouble2);
GPURUNTIME_BENCHMARK(imagFloat2);

}  // namespace
