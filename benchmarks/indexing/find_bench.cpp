#include <cstring>
#include <random>

#include "support/bench.hpp"

namespace {

using namespace benchsupport;
using gpuruntime::FindFirstLast;

constexpr unsigned long n = 1UL << 24;

/// n elements of which so many in a hundred, at random places, are not 0; their flags, running count and number.
template <class T>
struct Sparse {
  explicit Sparse(unsigned int percent) : input(n), prefix(n), total(1) {
    std::vector<unsigned char> host(input.bytes());
    std::mt19937 engine(percent);
    for (unsigned long i = 0; i < n; ++i) {
      std::memset(&host[i * sizeof(T)], engine() % 100 < percent ? 1 : 0, sizeof(T));
    }
    gpuruntime::recipes::copyToDevice(input.data(), host.data(), input.bytes());
    found = count();
  }

  unsigned long count() {
    typename gpuruntime::FlagNonZero::Invoker<T>()(nullptr, prefix.data(), input.data(), n);
    gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), prefix.data(), n, n, 1);
    double last;
    gpuruntime::recipes::copyToHost(&last, total.data(), sizeof last);
    return static_cast<unsigned long>(last);
  }

  DeviceArray<T> input;
  DeviceArray<double> prefix, total;
  unsigned long found;
};

// The list of positions from the counts, or with the flags and counts, as callers run them.
template <class T, unsigned int PERCENT, bool WHOLE_CHAIN>
void find1D(benchmark::State& state) {
  Sparse<T> data(PERCENT);
  DeviceArray<double> positions(data.found);
  measure(state, n, data.input.bytes() + (WHOLE_CHAIN ? 3 : 1) * data.prefix.bytes(),
          (WHOLE_CHAIN ? 2 : 0) * data.prefix.bytes() + positions.bytes(), [&] {
            if (WHOLE_CHAIN) data.count();
            typename gpuruntime::Find1D::Invoker<T>()(nullptr, positions.data(), data.input.data(), data.prefix.data(),
                                                      data.found, n, FindFirstLast::first);
          });
}
#define GPURUNTIME_BENCHMARK_DENSITIES(T, WHOLE_CHAIN) \
  GPURUNTIME_BENCHMARK(find1D<T, 1, WHOLE_CHAIN>);     \
  GPURUNTIME_BENCHMARK(find1D<T, 50, WHOLE_CHAIN>);    \
  GPURUNTIME_BENCHMARK(find1D<T, 99, WHOLE_CHAIN>)
GPURUNTIME_BENCHMARK_DENSITIES(double, true);
GPURUNTIME_BENCHMARK_DENSITIES(bool, true);
GPURUNTIME_BENCHMARK_DENSITIES(double, false);
GPURUNTIME_BENCHMARK_DENSITIES(bool, false);
GPURUNTIME_BENCHMARK_DENSITIES(double2, false);

void find2D(benchmark::State& state) {
  constexpr unsigned long numRows = 4096;
  Sparse<double> data(50);
  DeviceArray<double> rows(data.found), columns(data.found);
  measure(state, n, data.input.bytes() + data.prefix.bytes(), rows.bytes() + columns.bytes(), [&] {
    gpuruntime::Find2D::Invoker<double>()(nullptr, rows.data(), columns.data(), data.input.data(), data.prefix.data(),
                                          data.found, numRows, n / numRows, FindFirstLast::first);
  });
}
GPURUNTIME_BENCHMARK(find2D);

template <class T, unsigned long ROWS>
void find2DWithValue(benchmark::State& state) {
  Sparse<T> data(50);
  DeviceArray<double> rows(data.found), columns(data.found);
  DeviceArray<T> values(data.found);
  measure(state, n, data.input.bytes() + data.prefix.bytes(), rows.bytes() + columns.bytes() + values.bytes(), [&] {
    typename gpuruntime::Find2DWithValue::Invoker<T>()(nullptr, rows.data(), columns.data(), values.data(),
                                                       data.input.data(), data.prefix.data(), data.found, ROWS,
                                                       n / ROWS, FindFirstLast::first);
  });
}
GPURUNTIME_BENCHMARK(find2DWithValue<double, 4096>);
GPURUNTIME_BENCHMARK(find2DWithValue<double, 4>);
GPURUNTIME_BENCHMARK(find2DWithValue<float2, 4096>);

}  // namespace
