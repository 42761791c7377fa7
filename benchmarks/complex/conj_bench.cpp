#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void conj(benchmark::State& state) {
  DeviceArray<T> in(largeCount), out(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { gpuruntime::Conj::Invoker<T>()(nullptr, out.data(), in.data(), largeCount); });
}
GPURUNTIME_BENCHMARK(conj<double2>);
GPURUNTIME_BENCHMARK(conj<float2>);

}  // namespace
