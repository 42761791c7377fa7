#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// 512 MiB of output, from a vector of `length` elements.
template <class T, unsigned long length>
void repmatColumnVector(benchmark::State& state) {
  const unsigned long repeats = (1UL << 29) / sizeof(T) / length;
  DeviceArray<T> in(length), out(length, repeats);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  measure(state, out.size(), in.bytes() < (1 << 20) ? 0 : in.bytes(), out.bytes(),
          [&] { gpuruntime::RepmatColumnVector::Invoker<T>()(nullptr, out.data(), in.data(), length, repeats); });
}
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 1>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 3>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 20>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 100>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 257>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, 1000>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, (1 << 22)>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double, (1 << 25)>);
GPURUNTIME_BENCHMARK(repmatColumnVector<unsigned char, 3>);
GPURUNTIME_BENCHMARK(repmatColumnVector<unsigned char, 100>);
GPURUNTIME_BENCHMARK(repmatColumnVector<unsigned char, 1000>);
GPURUNTIME_BENCHMARK(repmatColumnVector<float, 3>);
GPURUNTIME_BENCHMARK(repmatColumnVector<float, 1000>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double2, 3>);
GPURUNTIME_BENCHMARK(repmatColumnVector<double2, 1000>);

template <class T, unsigned long rows, unsigned long repeats>
void repmatMatrixRows(benchmark::State& state) {
  const unsigned long columns = (1UL << 29) / sizeof(T) / rows / repeats;
  DeviceArray<T> in(rows, columns), out(rows, columns * repeats);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  measure(state, out.size(), in.bytes(), out.bytes(),
          [&] { gpuruntime::RepmatMatrixRows::Invoker<T>()(nullptr, out.data(), in.data(), rows, columns, repeats); });
}
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 3, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 3, 1000000>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1000, 2>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double, 1000000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<unsigned char, 1000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<float, 1000, 8>);
GPURUNTIME_BENCHMARK(repmatMatrixRows<double2, 1000, 8>);

template <class T, unsigned long rows, unsigned long length>
void repmatRowVector(benchmark::State& state) {
  const unsigned long pages = (1UL << 29) / sizeof(T) / rows / length;
  DeviceArray<T> in(length), out(rows, length * pages);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  measure(state, out.size(), 0, out.bytes(),
          [&] { gpuruntime::RepmatRowVector::Invoker<T>()(nullptr, out.data(), in.data(), length, rows, pages); });
}
GPURUNTIME_BENCHMARK(repmatRowVector<double, 1, 1>);
GPURUNTIME_BENCHMARK(repmatRowVector<double, 3, 1000>);
GPURUNTIME_BENCHMARK(repmatRowVector<double, 1000, 1000>);
GPURUNTIME_BENCHMARK(repmatRowVector<unsigned char, 1000, 1000>);

}  // namespace
