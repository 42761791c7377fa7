#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// Columns of 2^20 elements.
template <class T>
void cumProd(benchmark::State& state) {
  constexpr unsigned long length = 1UL << 20, count = largeCount / sizeof(T) * 4;
  DeviceArray<T> data(count), totals(count / length);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  measure(state, count, data.bytes(), data.bytes(),
          [&] { typename gpuruntime::CumProd::Invoker<T>()(nullptr, totals.data(), data.data(), count, length, 1); });
}
GPURUNTIME_BENCHMARK(cumProd<double>);
GPURUNTIME_BENCHMARK(cumProd<int>);
GPURUNTIME_BENCHMARK(cumProd<long long>);
GPURUNTIME_BENCHMARK(cumProd<double2>);

}  // namespace
