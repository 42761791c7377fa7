#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void flagNonZero(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<double> out(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { typename gpuruntime::FlagNonZero::Invoker<T>()(nullptr, out.data(), in.data(), largeCount); });
}
GPURUNTIME_BENCHMARK(flagNonZero<double>);
GPURUNTIME_BENCHMARK(flagNonZero<unsigned char>);

void flagNegative(benchmark::State& state) {
  DeviceArray<double> in(largeCount), out(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { gpuruntime::FlagNegative::Invoker<double>()(nullptr, out.data(), in.data(), largeCount); });
}
GPURUNTIME_BENCHMARK(flagNegative);

}  // namespace
