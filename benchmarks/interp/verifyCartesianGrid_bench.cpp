#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <unsigned long numDimensions>
void verifyCartesianGrid(benchmark::State& state) {
  Sizes sizes(numDimensions, 1UL << 24 / numDimensions);
  DeviceArray<double> full(1UL << 24), grid(sizes[0]);
  gpuruntime::recipes::fillOnDevice(full.data(), 0, full.bytes());
  gpuruntime::recipes::fillOnDevice(grid.data(), 0, grid.bytes());
  measureReading(state, full.size(), full.bytes(), 0, [&] {
    gpuruntime::VerifyNDCartesianGrid::Invoker<double>()(nullptr, full.data(), grid.data(), 1, sizes.data(),
                                                         numDimensions);
  });
}
GPURUNTIME_BENCHMARK(verifyCartesianGrid<2>);
GPURUNTIME_BENCHMARK(verifyCartesianGrid<3>);
GPURUNTIME_BENCHMARK(verifyCartesianGrid<4>);

}  // namespace
