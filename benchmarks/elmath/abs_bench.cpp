#include "support/bench.hpp"

#include <cmath>
#include <vector>

namespace {

using namespace benchsupport;

// Values that are no integers, of every size from 0.6 to 2.
template <class T>
void fill(DeviceArray<T>& array) {
  using R = gpuruntime::RealOf<T>;
  const unsigned long parts = array.bytes() / sizeof(R);
  gpuruntime::Linspace::Invoker<R>()(nullptr, parts, reinterpret_cast<R*>(array.data()), R(0.6), R(2));
}

template <class T>
void abs(benchmark::State& state) {
  DeviceArray<T> in(largeCount);
  DeviceArray<gpuruntime::RealOf<T>> out(largeCount);
  fill(in);
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { typename gpuruntime::Abs::Invoker<T>()(nullptr, out.data(), in.data(), largeCount); });
}

template <class T>
void absPower(benchmark::State& state, double p) {
  DeviceArray<T> in(largeCount);
  DeviceArray<gpuruntime::RealOf<T>> out(largeCount);
  fill(in);
  measure(state, largeCount, in.bytes(), out.bytes(),
          [&] { typename gpuruntime::AbsPower::Invoker<T>()(nullptr, out.data(), in.data(), p, largeCount); });
}

// What a caller would write: one thread, the C library.
template <class Call>
void plainLoop(benchmark::State& state, Call call) {
  DeviceArray<double2> in(largeCount);
  fill(in);
  const std::vector<double2> source = in.toHost();
  std::vector<double> result(largeCount);
  measure(state, largeCount, in.bytes(), result.size() * sizeof(double), [&] {
    for (unsigned long i = 0; i < largeCount; ++i) result[i] = call(source[i]);
    benchmark::DoNotOptimize(result.data());
  });
}

void absPowerSquare(benchmark::State& state) {
  absPower<double>(state, 2);
}
void absPowerFraction(benchmark::State& state) {
  absPower<double>(state, 1.7);
}
void plainLoopOfHypot(benchmark::State& state) {
  plainLoop(state, [](double2 z) { return std::hypot(z.x, z.y); });
}
void plainLoopOfPow(benchmark::State& state) {
  plainLoop(state, [](double2 z) { return std::pow(std::abs(z.x), 1.7); });
}
GPURUNTIME_BENCHMARK(abs<double>);
GPURUNTIME_BENCHMARK(abs<double2>);
GPURUNTIME_BENCHMARK(abs<float2>);
GPURUNTIME_BENCHMARK(absPowerSquare);
GPURUNTIME_BENCHMARK(absPowerFraction);
GPURUNTIME_BENCHMARK(plainLoopOfHypot);
GPURUNTIME_BENCHMARK(plainLoopOfPow);

}  // namespace
