#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// About so many elements, Lo + 1 rows S apart to a group.
template <class T, unsigned long S, unsigned long Lo>
void diff(benchmark::State& state) {
  constexpr unsigned long groups = largeCount / (S * Lo), n = groups * S * Lo;
  DeviceArray<T> input(groups * S * (Lo + 1)), output(n);
  gpuruntime::recipes::fillOnDevice(input.data(), 1, input.bytes());
  measure(state, n, input.bytes(), output.bytes(),
          [&] { typename gpuruntime::Diff::Invoker<T>()(nullptr, output.data(), input.data(), S, Lo, n); });
}
#define GPURUNTIME_BENCHMARK_TYPES(S, LO)    \
  GPURUNTIME_BENCHMARK(diff<double, S, LO>); \
  GPURUNTIME_BENCHMARK(diff<float, S, LO>);  \
  GPURUNTIME_BENCHMARK(diff<int, S, LO>);    \
  GPURUNTIME_BENCHMARK(diff<unsigned long long, S, LO>)
GPURUNTIME_BENCHMARK_TYPES(1, (1UL << 26) - 1);
GPURUNTIME_BENCHMARK_TYPES(8192, 8191);
GPURUNTIME_BENCHMARK(diff<double, 1, 1023>);
GPURUNTIME_BENCHMARK(diff<double, 1, 7>);
GPURUNTIME_BENCHMARK(diff<double2, 8192, 8191>);
GPURUNTIME_BENCHMARK(diff<signed char, 1, (1UL << 26) - 1>);

void diffOfOneElement(benchmark::State& state) {
  DeviceArray<double> input(2), output(1);
  measureOneElement(state, [&] { gpuruntime::Diff::Invoker<double>()(nullptr, output.data(), input.data(), 1, 1, 1); });
}
GPURUNTIME_BENCHMARK_ONE(diffOfOneElement);

}  // namespace
