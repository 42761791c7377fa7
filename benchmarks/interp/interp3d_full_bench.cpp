#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <unsigned long side>
void interp3dScattered(benchmark::State& state) {
  constexpr unsigned long count = 1UL << 21;
  const DeviceArray<double> grid(evenGrid(side)), values = someValues(side * side * side);
  std::vector<DeviceArray<double>> queries;
  for (unsigned int d = 0; d < 3; ++d) queries.emplace_back(queriesBetween(0, 1, count, Order::shuffled, d + 1));
  DeviceArray<double> out(count);
  measure(state, count, 3 * out.bytes(), out.bytes(), [&] {
    gpuruntime::Interp3d_NonCompactQuery::Invoker<double, double>()(
        nullptr, out.data(), grid.data(), grid.data(), grid.data(), values.data(), queries[0].data(), queries[1].data(),
        queries[2].data(), {side, side, side}, count, 0.0, gpuruntime::InterpTypeLinear,
        gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp3dScattered<32>);
GPURUNTIME_BENCHMARK(interp3dScattered<256>);

void interp3dMeshFullGrid(benchmark::State& state) {
  constexpr unsigned long from = 128, to = 256;
  const DeviceArray<double> grid(stepsBetween(1, from, from)), values = someValues(from * from * from);
  std::vector<DeviceArray<double>> queries;
  for (int d = 0; d < 3; ++d) queries.emplace_back(stepsBetween(1, from, to));
  const DeviceArray<long long> bins = binsOfMesh(queries, Sizes(3, from));
  DeviceArray<double> out(to * to * to);
  measure(state, out.size(), out.bytes(), "writtenOfCopy", copyBandwidth(), [&] {
    gpuruntime::Interp3d_CompactQuery::Invoker<double, double>()(
        nullptr, out.data(), grid.data(), grid.data(), grid.data(), values.data(), queries[0].data(), queries[1].data(),
        queries[2].data(), bins.data(), Sizes(3, to), Sizes(3, from), 0.0, gpuruntime::InterpTypeLinear,
        gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp3dMeshFullGrid);

}  // namespace
