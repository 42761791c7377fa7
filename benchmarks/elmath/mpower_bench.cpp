#include "support/bench.hpp"

namespace {

using namespace benchsupport;

void mpowerMatrixScalar(benchmark::State& state) {
  constexpr unsigned long side = 4096;
  DeviceArray<double> V(side, side), out(side, side), d(side);
  gpuruntime::recipes::fillOnDevice(V.data(), 1, V.bytes());
  gpuruntime::Linspace::Invoker<double>()(nullptr, side, d.data(), 0.5, 2);
  measure(state, V.size(), V.bytes(), out.bytes(), [&] {
    gpuruntime::MPowerMatrixScalar::Invoker<double>()(nullptr, out.data(), V.data(), d.data(), 2.5, side);
  });
}
GPURUNTIME_BENCHMARK(mpowerMatrixScalar);

}  // namespace
