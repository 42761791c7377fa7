#include "support/indexing.hpp"

namespace {

using namespace benchsupport;

constexpr unsigned long side = 1000;

void sub2ind2D(benchmark::State& state) {
  const DeviceArray<double> subscripts = filledArray<double>(2 * indexCount);
  DeviceArray<double> linear(indexCount);
  const double* rows = subscripts.data();
  measure(state, indexCount, subscripts.bytes(), linear.bytes(), [&] {
    gpuruntime::Sub2Ind2D::Invoker<double>()(nullptr, indexCount, linear.data(), rows, rows + indexCount, side);
  });
}
GPURUNTIME_BENCHMARK(sub2ind2D);

void sub2ind2DChecked(benchmark::State& state) {
  const DeviceArray<double> subscripts = filledArray<double>(2 * indexCount);
  DeviceArray<double> linear(indexCount);
  const double* rows = subscripts.data();
  measure(state, indexCount, subscripts.bytes(), linear.bytes(), [&] {
    gpuruntime::Sub2Ind2DChecked::Invoker<double>()(nullptr, indexCount, linear.data(), rows, rows + indexCount, side,
                                                    side);
  });
}
GPURUNTIME_BENCHMARK(sub2ind2DChecked);

void sub2ind3D(benchmark::State& state) {
  const DeviceArray<double> subscripts = filledArray<double>(3 * indexCount);
  DeviceArray<double> linear(indexCount);
  const double* rows = subscripts.data();
  measure(state, indexCount, subscripts.bytes(), linear.bytes(), [&] {
    gpuruntime::Sub2Ind3D::Invoker<double>()(nullptr, indexCount, linear.data(), rows, rows + indexCount,
                                             rows + 2 * indexCount, side, side);
  });
}
GPURUNTIME_BENCHMARK(sub2ind3D);

void sub2ind3DChecked(benchmark::State& state) {
  const DeviceArray<double> subscripts = filledArray<double>(3 * indexCount);
  DeviceArray<double> linear(indexCount);
  const double* rows = subscripts.data();
  measure(state, indexCount, subscripts.bytes(), linear.bytes(), [&] {
    gpuruntime::Sub2Ind3DChecked::Invoker<double>()(nullptr, indexCount, linear.data(), rows, rows + indexCount,
                                                    rows + 2 * indexCount, side, side, side);
  });
}
GPURUNTIME_BENCHMARK(sub2ind3DChecked);

void ind2sub2D(benchmark::State& state) {
  const ChosenIndices<const double*> linear(indexCount, Choice::shuffled);
  DeviceArray<double> subscripts(2 * indexCount);
  measure(state, indexCount, linear.bytes(), subscripts.bytes(), [&] {
    gpuruntime::Ind2Sub2D::Invoker<double>()(nullptr, indexCount, subscripts.data(), subscripts.data() + indexCount,
                                             linear.index, side);
  });
}
GPURUNTIME_BENCHMARK(ind2sub2D);

void ind2sub3D(benchmark::State& state) {
  const ChosenIndices<const double*> linear(indexCount, Choice::shuffled);
  DeviceArray<double> subscripts(3 * indexCount);
  double* rows = subscripts.data();
  measure(state, indexCount, linear.bytes(), subscripts.bytes(), [&] {
    gpuruntime::Ind2Sub3D::Invoker<double>()(nullptr, indexCount, rows, rows + indexCount, rows + 2 * indexCount,
                                             linear.index, side, 100);
  });
}
GPURUNTIME_BENCHMARK(ind2sub3D);

template <class Family, class T>
void select(benchmark::State& state, unsigned long stride) {
  constexpr unsigned long columns = 4;
  const ChosenIndices<const double*> index(columns, Choice::shuffled);
  const DeviceArray<T> matrix = filledArray<T>(columns * indexCount);
  DeviceArray<double> indices(indexCount);
  gpuruntime::RepmatColumnVector::Invoker<double>()(nullptr, indices.data(), index.index, columns,
                                                    indexCount / columns);
  DeviceArray<T> out(indexCount);
  measure(state, indexCount, out.bytes() + indices.bytes(), out.bytes(), [&] {
    typename Family::template Invoker<T>()(nullptr, indexCount, out.data(), matrix.data(), indices.data(), stride);
  });
}
template <class T>
void selectFromRows(benchmark::State& state) {
  select<gpuruntime::SelectFromRows, T>(state, indexCount);
}
template <class T>
void selectFromColumns(benchmark::State& state) {
  select<gpuruntime::SelectFromColumns, T>(state, 4);
}
GPURUNTIME_BENCHMARK(selectFromRows<double>);
GPURUNTIME_BENCHMARK(selectFromColumns<double>);

}  // namespace
