#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class Family, class T>
void spaced(benchmark::State& state, unsigned long count, T start, T stop) {
  DeviceArray<T> out(count);
  measure(state, count, 0, out.bytes(),
          [&] { typename Family::template Invoker<T>()(nullptr, count, out.data(), start, stop); });
}

void linspaceDouble(benchmark::State& state) {
  spaced<gpuruntime::Linspace, double>(state, largeCount, -1, 3);
}
void linspaceFloat(benchmark::State& state) {
  spaced<gpuruntime::Linspace, float>(state, largeCount, -1, 3);
}
void linspaceDouble2(benchmark::State& state) {
  spaced<gpuruntime::Linspace, double2>(state, largeCount, {-1, 0}, {3, 1});
}
void logspaceDouble(benchmark::State& state) {
  spaced<gpuruntime::Logspace, double>(state, 1UL << 22, -1, 3);
}
void logspaceDouble2(benchmark::State& state) {
  spaced<gpuruntime::Logspace, double2>(state, 1UL << 20, {-1, 0}, {3, 1});
}
GPURUNTIME_BENCHMARK(linspaceDouble);
GPURUNTIME_BENCHMARK(linspaceFloat);
GPURUNTIME_BENCHMARK(linspaceDouble2);
GPURUNTIME_BENCHMARK(logspaceDouble);
GPURUNTIME_BENCHMARK(logspaceDouble2);

void linspaceOfOneElement(benchmark::State& state) {
  DeviceArray<double> out(1);
  measureOneElement(state, [&] { gpuruntime::Linspace::Invoker<double>()(nullptr, 1, out.data(), 0, 1); });
}
GPURUNTIME_BENCHMARK_ONE(linspaceOfOneElement);

}  // namespace
