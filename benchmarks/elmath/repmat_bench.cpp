#include "support/bench.hpp"

namespace {

using namespace benchsupport;

constexpr unsigned long outputBytes = 1UL << 29;
constexpr unsigned long inCaches = 1UL << 20;

template <class T>
DeviceArray<T> filledArray(unsigned long size) {
  DeviceArray<T> array(size);
  gpuruntime::recipes::fillOnDevice(array.data(), 7, array.bytes());
  return array;
}

// What stays in the caches while it is repeated counts as not read.
template <class T, unsigned long length>
void repmatColumnVector(benchmark::State& state) {
  const unsigned long repeats = outputBytes / sizeof(T) / length;
  const DeviceArray<T> in = filledArray<T>(length);
  DeviceArray<T> out(length * repeats);
  measure(state, out.size(), in.bytes() < inCaches ? 0 : in.bytes(), out.bytes(),
          [&] { gpuruntime::RepmatColumnVector::Invoker<T>()(nullptr, out.data(), in.data(), length, repeats); });
}
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 3>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 100>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 1000>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 1 << 22>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 1 << 25>);
GPURUNTIME_BENCHMARK(repmatColumnVector<unsigned char, 3>);
GPURUNTIME_BENCHMARK(repmatColumnVector<unsigned char, 1000>);
GPURUNTIME_BENCHMARK(repmatColumnVector<float, 1000>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double2, 1000>);

template <class T, unsigned long rows, unsigned long repeats>
void repmatMatrixRows(benchmark::State& state) {
  const unsigned long columns = outputBytes / sizeof(T) / rows / repeats;
  const DeviceArray<T> in = filledArray<T>(rows * columns);
  DeviceArray<T> out(in.size() * repeats);
  measure(state, out.size(), in.bytes(), out.bytes(),
          [&] { gpuruntime::RepmatMatrixRows::Invoker<T>()(nullptr, out.data(), in.data(), rows, columns, repeats); });
}
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 3, 1000000>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1000, 2>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1 << 22, 4>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<unsigned char, 1000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<float, 1000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double2, 1000, 8>);

template <class T, unsigned long rows>
void repmatRowVector(benchmark::State& state) {
  const unsigned long length = 1000, pages = outputBytes / sizeof(T) / rows / length;
  const DeviceArray<T> in = filledArray<T>(length);
  DeviceArray<T> out(rows * length * pages);
  measure(state, out.size(), 0, out.bytes(),
          [&] { gpuruntime::RepmatRowVector::Invoker<T>()(nullptr, out.data(), in.data(), length, rows, pages); });
}
GPURUNTIME_BENCHMARK(repmatRowVector<double, 3>);
GPURUNTIME_BENCHMARK(repmatRowVector<double, 1000>);
GPURUNTIME_BENCHMARK(repmatRowVector<unsigned char, 1000>);

void repmatOfOneElement(benchmark::State& state) {
  DeviceArray<double> in(1), out(1);
  measureOneElement(state,
                    [&] { gpuruntime::RepmatMatrixRows::Invoker<double>()(nullptr, out.data(), in.data(), 1, 1, 1); });
}
GPURUNTIME_BENCHMARK_ONE(repmatOfOneElement);

}  // namespace
