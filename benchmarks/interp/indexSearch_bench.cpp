#include "support/interp.hpp"

namespace {

using namespace benchsupport;

template <Order order, unsigned long n>
void indexSearch(benchmark::State& state, const std::vector<double>& points) {
  const DeviceArray<double> grid(points), queries(queriesBetween(0, 1, lineQueries, order));
  DeviceArray<long long> bins(lineQueries);
  measure(state, lineQueries, queries.bytes(), bins.bytes(), [&] {
    gpuruntime::IndexSearch::Invoker<double>()(nullptr, bins.data(), 0, grid.data(), queries.data(), n, lineQueries);
  });
}
template <Order order, unsigned long n>
void indexSearchEven(benchmark::State& state) {
  indexSearch<order, n>(state, evenGrid(n));
}
template <Order order, unsigned long n>
void indexSearchUneven(benchmark::State& state) {
  indexSearch<order, n>(state, unevenGrid(n));
}
GPURUNTIME_BENCHMARK(indexSearchEven<Order::sorted, 100>);
GPURUNTIME_BENCHMARK(indexSearchEven<Order::shuffled, 100>);
GPURUNTIME_BENCHMARK(indexSearchUneven<Order::sorted, 100>);
GPURUNTIME_BENCHMARK(indexSearchUneven<Order::shuffled, 100>);
GPURUNTIME_BENCHMARK(indexSearchEven<Order::shuffled, 1000000>);
GPURUNTIME_BENCHMARK(indexSearchUneven<Order::sorted, 1000000>);
GPURUNTIME_BENCHMARK(indexSearchUneven<Order::shuffled, 1000000>);

void indexSearchColonGrid(benchmark::State& state) {
  const DeviceArray<double> queries(queriesBetween(1, 1000, lineQueries, Order::shuffled));
  DeviceArray<long long> bins(lineQueries);
  measure(state, lineQueries, queries.bytes(), bins.bytes(), [&] {
    gpuruntime::IndexSearch_ColonGrid::Invoker<double>()(nullptr, bins.data(), 0, queries.data(), 1000, lineQueries);
  });
}
GPURUNTIME_BENCHMARK(indexSearchColonGrid);

}  // namespace
