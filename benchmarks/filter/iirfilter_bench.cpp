#include <random>

#include "support/bench.hpp"

namespace {

using namespace benchsupport;

enum class Layout { interleaved, contiguous };

// A filter of order N, with poles inside the unit circle, over 2^24 samples in columns.
template <class T, int N, unsigned int COLUMNS, Layout LAYOUT>
void iirFilter(benchmark::State& state) {
  constexpr unsigned int length = (1U << 24) / COLUMNS;
  std::vector<T> b(N + 1), a(N + 1), x(1U << 24);
  for (int i = 0; i <= N; ++i) {
    b[i] = T(1.0 / (i + 1));
    a[i] = T(i == 0 ? 1 : 0.5 / N);
  }
  std::mt19937 engine(1);
  for (T& sample : x) sample = T(static_cast<int>(engine() % 2001) - 1000);
  const DeviceArray<T> deviceB(b), deviceA(a), deviceX(x);
  DeviceArray<T> y(x.size());
  measure(state, x.size(), y.bytes(), y.bytes(), [&] {
    typename gpuruntime::IIRFilter::Invoker<T, mpl_::integral_c<int, N>>()(
        nullptr, y.data(), nullptr, deviceB.data(), deviceA.data(), deviceX.data(), nullptr, N + 1, N + 1, length,
        COLUMNS, LAYOUT == Layout::contiguous ? 1 : COLUMNS, 1, 0);
  });
}
#define GPURUNTIME_BENCHMARK_LAYOUTS(T, N, COLUMNS)                    \
  GPURUNTIME_BENCHMARK(iirFilter<T, N, COLUMNS, Layout::interleaved>); \
  GPURUNTIME_BENCHMARK(iirFilter<T, N, COLUMNS, Layout::contiguous>)
#define GPURUNTIME_BENCHMARK_ORDERS(T, COLUMNS) \
  GPURUNTIME_BENCHMARK_LAYOUTS(T, 2, COLUMNS);  \
  GPURUNTIME_BENCHMARK_LAYOUTS(T, 6, COLUMNS);  \
  GPURUNTIME_BENCHMARK_LAYOUTS(T, 10, COLUMNS)
GPURUNTIME_BENCHMARK_ORDERS(double, 64);
GPURUNTIME_BENCHMARK_ORDERS(double, 4096);
GPURUNTIME_BENCHMARK_ORDERS(float, 4096);

}  // namespace
