#include "support/interp.hpp"

namespace {

using namespace benchsupport;

void checkInfNaNAndStrictlyIncreasing(benchmark::State& state) {
  const DeviceArray<double> grid(evenGrid(largeCount / 4));
  measureReading(state, grid.size(), grid.bytes(), 0, [&] {
    gpuruntime::CheckInfNaNAndStrictlyIncreasing::Invoker<double>()(nullptr, grid.data(), grid.size());
  });
}
GPURUNTIME_BENCHMARK(checkInfNaNAndStrictlyIncreasing);

}  // namespace
