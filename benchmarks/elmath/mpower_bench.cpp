#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class Family>
void mpower(benchmark::State& state) {
  constexpr unsigned long side = 4096;
  DeviceArray<double> V(side, side), out(side, side), d(side);
  gpuruntime::recipes::fillOnDevice(V.data(), 1, V.bytes());
  gpuruntime::Linspace::Invoker<double>()(nullptr, side, d.data(), 0.5, 2);
  measure(state, V.size(), V.bytes(), out.bytes(),
          [&] { typename Family::template Invoker<double>()(nullptr, out.data(), V.data(), d.data(), 2.5, side); });
}
void mpowerMatrixScalar(benchmark::State& state) {
  mpower<gpuruntime::MPowerMatrixScalar>(state);
}
void mpowerScalarMatrix(benchmark::State& state) {
  mpower<gpuruntime::MPowerScalarMatrix>(state);
}
GPURUNTIME_BENCHMARK(mpowerMatrixScalar);
GPURUNTIME_BENCHMARK(mpowerScalarMatrix);

}  // namespace
