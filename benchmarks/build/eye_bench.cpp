#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// The diagonal of a matrix: one line of memory, or of a device's sector, for each element.
void eye(benchmark::State& state) {
  DeviceArray<double> out(largeSide, largeSide);
  gpuruntime::recipes::fillOnDevice(out.data(), 0, out.bytes());
  measure(state, largeSide, 0, largeSide * sizeof(double),
          [&] { gpuruntime::Eye::Invoker<double>()(nullptr, largeSide, out.data(), largeSide); });
}
GPURUNTIME_BENCHMARK(eye);

void eyeOfOneElement(benchmark::State& state) {
  DeviceArray<double> out(1);
  measureOneElement(state, [&] { gpuruntime::Eye::Invoker<double>()(nullptr, 1, out.data(), 1); });
}
GPURUNTIME_BENCHMARK_ONE(eyeOfOneElement);

}  // namespace
