#include "support/interp.hpp"

namespace {

using namespace benchsupport;

constexpr unsigned long side = 256, scattered = 1UL << 22;

template <gpuruntime::InterpType method>
void interp2dScattered(benchmark::State& state) {
  const DeviceArray<double> grid(evenGrid(side)), values = someValues(side * side);
  const DeviceArray<double> queries0(queriesBetween(0, 1, scattered, Order::shuffled, 1));
  const DeviceArray<double> queries1(queriesBetween(0, 1, scattered, Order::shuffled, 2));
  DeviceArray<double> out(scattered);
  measure(state, scattered, 2 * queries0.bytes(), out.bytes(), [&] {
    gpuruntime::Interp2d_NonCompactQuery::Invoker<double, double>()(
        nullptr, out.data(), grid.data(), grid.data(), values.data(), queries0.data(), queries1.data(), {side, side},
        scattered, 0.0, method, gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp2dScattered<gpuruntime::InterpTypeLinear>);
GPURUNTIME_BENCHMARK(interp2dScattered<gpuruntime::InterpTypeNearest>);

void interp2dMeshFullGrid(benchmark::State& state) {
  constexpr unsigned long from = 2048, to = 4096;
  const DeviceArray<double> grid(stepsBetween(1, from, from)), values = someValues(from * from);
  std::vector<DeviceArray<double>> queries;
  for (int d = 0; d < 2; ++d) queries.emplace_back(stepsBetween(1, from, to));
  const DeviceArray<long long> bins = binsOfMesh(queries, {from, from});
  DeviceArray<double> out(to * to);
  measure(state, out.size(), out.bytes(), "writtenOfCopy", copyBandwidth(), [&] {
    gpuruntime::Interp2d_CompactQuery::Invoker<double, double>()(
        nullptr, out.data(), grid.data(), grid.data(), values.data(), queries[0].data(), queries[1].data(), bins.data(),
        {to, to}, {from, from}, 0.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp2dMeshFullGrid);

}  // namespace
