#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// The diagonal of a matrix: one line of memory, or of a device's sector, for each element.
template <class Family>
void diagonal(benchmark::State& state, bool outOfMatrix) {
  DeviceArray<double> matrix(largeSide, largeSide), vector(largeSide);
  gpuruntime::recipes::fillOnDevice(matrix.data(), 7, matrix.bytes());
  gpuruntime::recipes::fillOnDevice(vector.data(), 7, vector.bytes());
  double* const to = outOfMatrix ? vector.data() : matrix.data();
  const double* const from = outOfMatrix ? matrix.data() : vector.data();
  measure(state, largeSide, vector.bytes(), vector.bytes(),
          [&] { typename Family::template Invoker<double>()(nullptr, to, from, largeSide, 0, largeSide); });
}

void diagMatToVec(benchmark::State& state) {
  diagonal<gpuruntime::DiagMatToVec>(state, true);
}
void diagVecToMat(benchmark::State& state) {
  diagonal<gpuruntime::DiagVecToMat>(state, false);
}
GPURUNTIME_BENCHMARK(diagMatToVec);
GPURUNTIME_BENCHMARK(diagVecToMat);

}  // namespace
