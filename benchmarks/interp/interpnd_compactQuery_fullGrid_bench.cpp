#include <cmath>
#include <numeric>

#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <unsigned int D, unsigned long from, unsigned long to>
void interpndMesh(benchmark::State& state) {
  const unsigned long count = static_cast<unsigned long>(std::pow(to, D));
  std::vector<double> points(from);
  std::iota(points.begin(), points.end(), 1.0);
  const DeviceArray<double> grid(points);
  const DeviceArray<double> values = someValues(static_cast<unsigned long>(std::pow(from, D)));
  std::vector<DeviceArray<double>> queries;
  std::vector<const double*> pointers;
  for (unsigned int d = 0; d < D; ++d) {
    queries.emplace_back(stepsBetween(1, from, to));
    pointers.push_back(queries[d].data());
  }
  const DeviceArray<long long> bins = binsOfMesh(queries, Sizes(D, from));
  DeviceArray<double> out(count);
  measure(state, count, out.bytes(), "writtenOfCopy", copyBandwidth(), [&] {
    gpuruntime::Interpnd_CompactQuery::Invoker<double, double>()(
        nullptr, out.data(), std::vector<const double*>(D, grid.data()), values.data(), pointers, bins.data(),
        Sizes(D, to), Sizes(D, from), 0.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant, D);
  });
}
GPURUNTIME_BENCHMARK(interpndMesh<4, 32, 64>);
GPURUNTIME_BENCHMARK(interpndMesh<5, 8, 24>);

}  // namespace
