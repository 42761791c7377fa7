#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <Order order, unsigned long n>
void interp1dColonGrid(benchmark::State& state) {
  const DeviceArray<double> values = someValues(n), queries(queriesBetween(1, n, lineQueries, order));
  DeviceArray<double> out(lineQueries);
  measure(state, lineQueries, queries.bytes(), out.bytes(), [&] {
    gpuruntime::Interp1d_ColonGrid::Invoker<double, double, double>()(
        nullptr, out.data(), double2{1, 1}, values.data(), queries.data(), n, lineQueries, gpuruntime::InterpTypeLinear,
        gpuruntime::InterpTypeConstant, 0.0);
  });
}
GPURUNTIME_BENCHMARK(interp1dColonGrid<Order::sorted, 100>);
GPURUNTIME_BENCHMARK(interp1dColonGrid<Order::shuffled, 100>);
GPURUNTIME_BENCHMARK(interp1dColonGrid<Order::shuffled, 1000000>);

}  // namespace
