#include <cmath>

#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <unsigned int D, unsigned long from>
void interpndScatteredColonGrid(benchmark::State& state) {
  const unsigned long count = 1UL << 20;
  const DeviceArray<double> values = someValues(static_cast<unsigned long>(std::pow(from, D)));
  std::vector<DeviceArray<double>> queries;
  std::vector<const double*> pointers;
  for (unsigned int d = 0; d < D; ++d) {
    queries.emplace_back(queriesBetween(1, from, count, Order::shuffled, d + 1));
    pointers.push_back(queries[d].data());
  }
  DeviceArray<double> out(count);
  measure(state, count, D * out.bytes(), out.bytes(), [&] {
    gpuruntime::Interpnd_NonCompactQuery_ColonGrid::Invoker<double, double>()(
        nullptr, out.data(), values.data(), pointers, Sizes(D, from), count, 0.0, gpuruntime::InterpTypeLinear,
        gpuruntime::InterpTypeConstant, D);
  });
}
GPURUNTIME_BENCHMARK(interpndScatteredColonGrid<4, 32>);
GPURUNTIME_BENCHMARK(interpndScatteredColonGrid<5, 16>);

}  // namespace
