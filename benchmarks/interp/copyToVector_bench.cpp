#include "support/interp.hpp"

namespace {

using namespace benchsupport;

void copyToVector(benchmark::State& state) {
  constexpr unsigned long rows = 16, columns = 1UL << 21;
  const DeviceArray<double> full = someValues(rows * columns);
  DeviceArray<double> out(columns);
  const unsigned long sizes[] = {rows, columns};
  // A cache line is read for each element.
  measure(state, columns, columns * 64, out.bytes(), [&] {
    gpuruntime::CopyToVector::Invoker<double>()(nullptr, out.data(), full.data(), 1, sizes, 2, full.size());
  });
}
GPURUNTIME_BENCHMARK(copyToVector);

}  // namespace
