#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void sumOf(benchmark::State& state, unsigned long N, unsigned long L, unsigned long S) {
  DeviceArray<T> in(N), out(N / L);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, N, in.bytes(), out.bytes(),
                 [&] { gpuruntime::SumNative::Invoker<T>()(nullptr, out.data(), in.data(), N, L, S); });
}

template <class T, unsigned long L>
void sumOfSegments(benchmark::State& state) {
  sumOf<T>(state, largeCount, L, 1);
}
// One vector, then length by segments, both ways round.
GPURUNTIME_BENCHMARK(sumOfSegments<double, (1 << 26)>);
GPURUNTIME_BENCHMARK(sumOfSegments<double, (1 << 22)>);
GPURUNTIME_BENCHMARK(sumOfSegments<double, (1 << 20)>);
GPURUNTIME_BENCHMARK(sumOfSegments<double, 1024>);
GPURUNTIME_BENCHMARK(sumOfSegments<double, 64>);
GPURUNTIME_BENCHMARK(sumOfSegments<double, 16>);
GPURUNTIME_BENCHMARK(sumOfSegments<double, 4>);
GPURUNTIME_BENCHMARK(sumOfSegments<int, (1 << 26)>);
GPURUNTIME_BENCHMARK(sumOfSegments<int, (1 << 20)>);
GPURUNTIME_BENCHMARK(sumOfSegments<int, 64>);
GPURUNTIME_BENCHMARK(sumOfSegments<int, 4>);
GPURUNTIME_BENCHMARK(sumOfSegments<double2, 1024>);

// Along each dimension of 512 x 512 x 256; the first is sumOfSegments.
template <class T, unsigned long L, unsigned long S>
void sumOfColumns(benchmark::State& state) {
  sumOf<T>(state, largeCount, L, S);
}
GPURUNTIME_BENCHMARK(sumOfSegments<double, 512>);
GPURUNTIME_BENCHMARK(sumOfColumns<double, 512, 512>);
GPURUNTIME_BENCHMARK(sumOfColumns<double, 256, 512 * 512>);
GPURUNTIME_BENCHMARK(sumOfColumns<int, 512, 512>);
GPURUNTIME_BENCHMARK(sumOfColumns<int, 256, 512 * 512>);
GPURUNTIME_BENCHMARK(sumOfColumns<double, (1 << 24), 4>);
GPURUNTIME_BENCHMARK(sumOfColumns<double, (1 << 20), 64>);

constexpr unsigned long asDoubleLength = 1UL << 20;
void sumAsDouble(benchmark::State& state) {
  DeviceArray<int> in(largeCount);
  DeviceArray<double> out(largeCount / asDoubleLength);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureReading(state, largeCount, in.bytes(), out.bytes(), [&] {
    gpuruntime::SumAsDouble::Invoker<int>()(nullptr, out.data(), in.data(), largeCount, asDoubleLength, 1);
  });
}
GPURUNTIME_BENCHMARK(sumAsDouble);

void sumOfOneElement(benchmark::State& state) {
  DeviceArray<double> in(1), out(1);
  gpuruntime::recipes::fillOnDevice(in.data(), 0, in.bytes());
  measureOneElement(state, [&] { gpuruntime::SumNative::Invoker<double>()(nullptr, out.data(), in.data(), 1, 1, 1); });
}
GPURUNTIME_BENCHMARK_ONE(sumOfOneElement);

}  // namespace
