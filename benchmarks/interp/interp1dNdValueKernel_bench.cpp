#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <Order order>
void interp1dColumns(benchmark::State& state) {
  constexpr unsigned long n = 1000, columns = 2000, count = 8000;
  const DeviceArray<double> grid(evenGrid(n)), values = someValues(n * columns);
  const DeviceArray<double> queries(queriesBetween(0, 1, count, order));
  DeviceArray<long long> bins(count);
  gpuruntime::IndexSearch::Invoker<double>()(nullptr, bins.data(), 0, grid.data(), queries.data(), n, count);
  DeviceArray<double> out(count * columns);
  measure(state, out.size(), values.bytes(), out.bytes(), [&] {
    gpuruntime::Interp1dNdValFull::Invoker<double, double, double>()(
        nullptr, out.data(), grid.data(), values.data(), queries.data(), bins.data(), count, n, values.size(),
        gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant, 0.0);
  });
}
GPURUNTIME_BENCHMARK(interp1dColumns<Order::sorted>);
GPURUNTIME_BENCHMARK(interp1dColumns<Order::shuffled>);

void interp1dColumnsColonGrid(benchmark::State& state) {
  constexpr unsigned long n = 1000, columns = 2000, count = 8000;
  const DeviceArray<double> values = someValues(n * columns), queries(queriesBetween(1, n, count, Order::sorted));
  DeviceArray<long long> bins(count);
  gpuruntime::IndexSearch_ColonGrid::Invoker<double>()(nullptr, bins.data(), 0, queries.data(), n, count);
  DeviceArray<double> out(count * columns);
  measure(state, out.size(), values.bytes(), out.bytes(), [&] {
    gpuruntime::Interp1dNdVal_ColonGrid::Invoker<double, double, double>()(
        nullptr, out.data(), double2{1, 1}, values.data(), queries.data(), bins.data(), count, n, values.size(),
        gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant, 0.0);
  });
}
GPURUNTIME_BENCHMARK(interp1dColumnsColonGrid);

}  // namespace
