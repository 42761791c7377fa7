#include <cmath>
#include <numeric>

#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <unsigned int D, unsigned long from>
void interpndScattered(benchmark::State& state) {
  const unsigned long count = 1UL << 20;
  std::vector<double> points(from);
  std::iota(points.begin(), points.end(), 1.0);
  const DeviceArray<double> grid(points);
  const DeviceArray<double> values = someValues(static_cast<unsigned long>(std::pow(from, D)));
  std::vector<DeviceArray<double>> queries;
  std::vector<const double*> pointers;
  for (unsigned int d = 0; d < D; ++d) {
    queries.emplace_back(queriesBetween(1, from, count, Order::shuffled, d + 1));
    pointers.push_back(queries[d].data());
  }
  DeviceArray<double> out(count);
  measure(state, count, D * out.bytes(), out.bytes(), [&] {
    gpuruntime::Interpnd_NonCompactQuery::Invoker<double, double>()(
        nullptr, out.data(), std::vector<const double*>(D, grid.data()), values.data(), pointers, Sizes(D, from), count,
        0.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant, D);
  });
}
GPURUNTIME_BENCHMARK(interpndScattered<4, 32>);
GPURUNTIME_BENCHMARK(interpndScattered<5, 16>);

}  // namespace
