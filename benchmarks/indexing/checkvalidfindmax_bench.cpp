#include "support/bench.hpp"

namespace {

using namespace benchsupport;

void checkValidFindMax(benchmark::State& state) {
  DeviceArray<double> input(largeCount);
  gpuruntime::IntColon::Invoker<double>()(nullptr, largeCount, input.data(), 1, 1);
  measureReading(state, largeCount, input.bytes(), 0, [&] {
    benchmark::DoNotOptimize(gpuruntime::CheckValidFindMax::Invoker<double>()(input.data(), largeCount));
  });
}
GPURUNTIME_BENCHMARK(checkValidFindMax);

}  // namespace
