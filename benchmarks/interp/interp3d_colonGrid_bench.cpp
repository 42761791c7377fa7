#include "support/interp.hpp"

namespace {

using namespace benchsupport;

void interp3dMesh(benchmark::State& state) {
  constexpr unsigned long from = 128, to = 256;
  const DeviceArray<double> values = someValues(from * from * from);
  std::vector<DeviceArray<double>> queries;
  for (int d = 0; d < 3; ++d) queries.emplace_back(stepsBetween(1, from, to));
  const DeviceArray<long long> bins = binsOfMesh(queries, Sizes(3, from));
  DeviceArray<double> out(to * to * to);
  measure(state, out.size(), out.bytes(), "writtenOfCopy", copyBandwidth(), [&] {
    gpuruntime::Interp3d_CompactQuery_ColonGrid::Invoker<double, double>()(
        nullptr, out.data(), values.data(), queries[0].data(), queries[1].data(), queries[2].data(), bins.data(),
        Sizes(3, to), Sizes(3, from), 0.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp3dMesh);

void interp3dColonGridScattered(benchmark::State& state) {
  constexpr unsigned long side = 256, count = 1UL << 21;
  const DeviceArray<double> values = someValues(side * side * side);
  std::vector<DeviceArray<double>> queries;
  for (unsigned int d = 0; d < 3; ++d) queries.emplace_back(queriesBetween(1, side, count, Order::shuffled, d + 1));
  DeviceArray<double> out(count);
  measure(state, count, 3 * out.bytes(), out.bytes(), [&] {
    gpuruntime::Interp3d_NonCompactQuery_ColonGrid::Invoker<double, double>()(
        nullptr, out.data(), values.data(), queries[0].data(), queries[1].data(), queries[2].data(), {side, side, side},
        count, 0.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp3dColonGridScattered);

}  // namespace
