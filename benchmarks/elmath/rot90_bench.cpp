#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, bool CLOCKWISE>
void rot90(benchmark::State& state) {
  DeviceArray<T> in(largeSide, largeSide), out(largeSide, largeSide);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  measure(state, in.size(), in.bytes(), in.bytes(),
          [&] { gpuruntime::Rot90::Invoker<T>()(nullptr, out.data(), in.data(), largeSide, largeSide, 1, CLOCKWISE); });
}
GPURUNTIME_BENCHMARK(rot90<double, true>);
GPURUNTIME_BENCHMARK(rot90<double, false>);
GPURUNTIME_BENCHMARK(rot90<unsigned char, true>);
GPURUNTIME_BENCHMARK(rot90<unsigned char, false>);
GPURUNTIME_BENCHMARK(rot90<float, true>);
GPURUNTIME_BENCHMARK(rot90<double2, true>);

void rot90OfOneElement(benchmark::State& state) {
  DeviceArray<double> in(1), out(1);
  measureOneElement(state,
                    [&] { gpuruntime::Rot90::Invoker<double>()(nullptr, out.data(), in.data(), 1, 1, 1, true); });
}
GPURUNTIME_BENCHMARK_ONE(rot90OfOneElement);

}  // namespace
