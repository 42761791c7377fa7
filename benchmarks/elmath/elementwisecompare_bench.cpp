#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class A, class B>
void compare(benchmark::State& state) {
  DeviceArray<A> a(largeCount);
  DeviceArray<B> b(largeCount);
  DeviceArray<bool> result(largeCount);
  gpuruntime::recipes::fillOnDevice(a.data(), 0x41, a.bytes());
  gpuruntime::recipes::fillOnDevice(b.data(), 0x41, b.bytes());
  measure(state, largeCount, a.bytes() + b.bytes(), result.bytes(), [&] {
    gpuruntime::ElementwiseCompare::Invoker<A, B>()(nullptr, largeCount, result.data(), a.data(), b.data(), false);
  });
}
GPURUNTIME_BENCHMARK(compare<double, float>);
GPURUNTIME_BENCHMARK(compare<int, int>);
GPURUNTIME_BENCHMARK(compare<double2, double2>);
GPURUNTIME_BENCHMARK(compare<long long, unsigned char>);

}  // namespace
