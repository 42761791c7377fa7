#include "support/interp.hpp"

namespace {

using namespace benchsupport;

// A picture of 2048 x 2048 values, resized.
template <unsigned long to>
void resize(benchmark::State& state) {
  constexpr unsigned long from = 2048;
  const DeviceArray<double> values = someValues(from * from);
  std::vector<DeviceArray<double>> queries;
  for (int d = 0; d < 2; ++d) queries.emplace_back(stepsBetween(1, from, to));
  const DeviceArray<long long> bins = binsOfMesh(queries, {from, from});
  DeviceArray<double> out(to * to);
  // Against what is written alone: the picture is read once, and often from the caches.
  measure(state, out.size(), out.bytes(), "writtenOfCopy", copyBandwidth(), [&] {
    gpuruntime::Interp2d_CompactQuery_ColonGrid::Invoker<double, double>()(
        nullptr, out.data(), values.data(), queries[0].data(), queries[1].data(), bins.data(), {to, to}, {from, from},
        0.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(resize<4096>);
GPURUNTIME_BENCHMARK(resize<1000>);

void interp2dColonGridScattered(benchmark::State& state) {
  constexpr unsigned long side = 4096, count = 1UL << 22;
  const DeviceArray<double> values = someValues(side * side);
  const DeviceArray<double> queries0(queriesBetween(1, side, count, Order::shuffled, 1));
  const DeviceArray<double> queries1(queriesBetween(1, side, count, Order::shuffled, 2));
  DeviceArray<double> out(count);
  measure(state, count, 2 * queries0.bytes(), out.bytes(), [&] {
    gpuruntime::Interp2d_NonCompactQuery_ColonGrid::Invoker<double, double>()(
        nullptr, out.data(), values.data(), queries0.data(), queries1.data(), {side, side}, count, 0.0,
        gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant);
  });
}
GPURUNTIME_BENCHMARK(interp2dColonGridScattered);

}  // namespace
