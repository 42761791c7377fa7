#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class Family, class T>
void flags(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<bool> out(largeCount);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { typename Family::template Invoker<T>()(nullptr, out.data(), in.data(), largeCount); });
}
template <class T>
void isNaN(benchmark::State& state) {
  flags<gpuruntime::IsNaN, T>(state);
}
template <class T>
void isInf(benchmark::State& state) {
  flags<gpuruntime::IsInf, T>(state);
}
template <class T>
void isNaNOrInf(benchmark::State& state) {
  flags<gpuruntime::IsNaNOrInf, T>(state);
}
template <class T>
void isNonZero(benchmark::State& state) {
  flags<gpuruntime::IsNonZero, T>(state);
}
template <class T>
void isNeitherZeroNorNaN(benchmark::State& state) {
  flags<gpuruntime::IsNeitherZeroNorNaN, T>(state);
}
GPURUNTIME_BENCHMARK(isNaN<double>);
GPURUNTIME_BENCHMARK(isNaN<float2>);
GPURUNTIME_BENCHMARK(isInf<double>);
GPURUNTIME_BENCHMARK(isNaNOrInf<double>);
GPURUNTIME_BENCHMARK(isNonZero<double>);
GPURUNTIME_BENCHMARK(isNeitherZeroNorNaN<double>);

}  // namespace
