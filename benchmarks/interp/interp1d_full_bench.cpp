#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <Order order, unsigned long n>
void interp1d(benchmark::State& state, const std::vector<double>& points) {
  const DeviceArray<double> grid(points), values = someValues(n), queries(queriesBetween(0, 1, lineQueries, order));
  DeviceArray<double> out(lineQueries);
  measure(state, lineQueries, queries.bytes(), out.bytes(), [&] {
    gpuruntime::Interp1dFull::Invoker<double, double, double>()(
        nullptr, out.data(), grid.data(), values.data(), queries.data(), n, lineQueries, gpuruntime::InterpTypeLinear,
        gpuruntime::InterpTypeConstant, 0.0);
  });
}
template <Order order, unsigned long n>
void interp1dEven(benchmark::State& state) {
  interp1d<order, n>(state, evenGrid(n));
}
template <Order order, unsigned long n>
void interp1dUneven(benchmark::State& state) {
  interp1d<order, n>(state, unevenGrid(n));
}
GPURUNTIME_BENCHMARK(interp1dEven<Order::sorted, 100>);
GPURUNTIME_BENCHMARK(interp1dEven<Order::shuffled, 100>);
GPURUNTIME_BENCHMARK(interp1dEven<Order::sorted, 1000000>);
GPURUNTIME_BENCHMARK(interp1dEven<Order::shuffled, 1000000>);
GPURUNTIME_BENCHMARK(interp1dUneven<Order::sorted, 100>);
GPURUNTIME_BENCHMARK(interp1dUneven<Order::shuffled, 100>);
GPURUNTIME_BENCHMARK(interp1dUneven<Order::sorted, 1000000>);
GPURUNTIME_BENCHMARK(interp1dUneven<Order::shuffled, 1000000>);

}  // namespace
