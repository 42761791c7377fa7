#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, class U>
void cast(benchmark::State& state) {
  using Family =
      std::conditional_t<std::is_same_v<T, gpuruntime::RealOf<T>>, gpuruntime::CastToReal, gpuruntime::CastToComplex>;
  DeviceArray<U> source(largeCount);
  DeviceArray<T> destination(largeCount);
  gpuruntime::recipes::fillOnDevice(source.data(), 0x41, source.bytes());
  measure(state, largeCount, source.bytes(), destination.bytes(),
          [&] { typename Family::template Invoker<T, U>()(nullptr, largeCount, destination.data(), source.data()); });
}
void castToBool(benchmark::State& state) {
  DeviceArray<double> source(largeCount);
  DeviceArray<bool> destination(largeCount);
  gpuruntime::recipes::fillOnDevice(source.data(), 0x41, source.bytes());
  measure(state, largeCount, source.bytes(), destination.bytes(),
          [&] { gpuruntime::CastToBool::Invoker<double>()(nullptr, largeCount, destination.data(), source.data()); });
}
void castBlocks(benchmark::State& state) {
  DeviceArray<double> source(largeCount);
  DeviceArray<float> destination(2 * largeCount);
  gpuruntime::recipes::fillOnDevice(source.data(), 0x41, source.bytes());
  measure(state, largeCount, source.bytes(), destination.bytes() / 2, [&] {
    gpuruntime::CastBlockToReal::Invoker<float, double>()(nullptr, largeCount, destination.data(), source.data(), 0,
                                                          2000, 1000);
  });
}
void castBlocksToComplex(benchmark::State& state) {
  DeviceArray<double2> source(largeCount);
  DeviceArray<float2> destination(2 * largeCount);
  gpuruntime::recipes::fillOnDevice(source.data(), 0x41, source.bytes());
  measure(state, largeCount, source.bytes(), destination.bytes() / 2, [&] {
    gpuruntime::CastBlockToComplex::Invoker<float2, double2>()(nullptr, largeCount, destination.data(), source.data(),
                                                               0, 2000, 1000);
  });
}
GPURUNTIME_BENCHMARK(cast<unsigned char, double>);
GPURUNTIME_BENCHMARK(cast<short, float>);
GPURUNTIME_BENCHMARK(cast<double, short>);
GPURUNTIME_BENCHMARK(cast<float2, double2>);
GPURUNTIME_BENCHMARK(cast<float, double>);
GPURUNTIME_BENCHMARK(cast<int, double>);
GPURUNTIME_BENCHMARK(cast<double, long long>);
GPURUNTIME_BENCHMARK(cast<long long, double>);
GPURUNTIME_BENCHMARK(cast<unsigned int, float>);
GPURUNTIME_BENCHMARK(cast<double, double>);
GPURUNTIME_BENCHMARK(castToBool);
GPURUNTIME_BENCHMARK(castBlocks);
GPURUNTIME_BENCHMARK(castBlocksToComplex);

}  // namespace
