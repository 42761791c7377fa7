#include "support/indexing.hpp"

namespace {

using namespace benchsupport;

template <class T, class I, Choice choice>
void subsref(benchmark::State& state) {
  const ChosenIndices<I> indices(indexCount, choice);
  const DeviceArray<T> in = filledArray<T>(indices.extent);
  DeviceArray<T> out(indexCount);
  measure(state, indexCount, out.bytes() + indices.bytes(), out.bytes(), [&] {
    typename gpuruntime::Subsref3D<I, void*, void*>::template Invoker<T>()(nullptr, indexCount, out.data(), in.data(),
                                                                           indices.extent, indexCount, indices.index, 1,
                                                                           1, nullptr, 1, 1, nullptr);
  });
}
GPURUNTIME_INDEX_BENCHMARKS(subsref);

// A block of a matrix: rows 2 to count + 1 of every other column, or of columns in any order.
template <class T, class I2, unsigned long count1>
void subsrefOfBlock(benchmark::State& state) {
  const MatrixBlock<I2> block(indexCount / count1, count1);
  const DeviceArray<T> in = filledArray<T>(block.elements);
  DeviceArray<T> out(indexCount);
  measure(state, indexCount, out.bytes(), out.bytes(), [&] {
    typename gpuruntime::Subsref3D<double2, I2, void*>::template Invoker<T>()(
        nullptr, 0, out.data(), in.data(), block.rows, count1, {2, 1}, block.columns.extent, indexCount / count1,
        block.columns.index, 1, 1, nullptr);
  });
}
GPURUNTIME_BLOCK_BENCHMARKS(subsrefOfBlock);

void subsrefOfOneElement(benchmark::State& state) {
  const DeviceArray<double> in = filledArray<double>(1);
  DeviceArray<double> out(1);
  measureOneElement(state, [&] {
    gpuruntime::Subsref3D<double2, double2, double2>::Invoker<double>()(nullptr, 1, out.data(), in.data(), 1, 1, {1, 1},
                                                                        1, 1, {1, 1}, 1, 1, {1, 1});
  });
}
GPURUNTIME_BENCHMARK_ONE(subsrefOfOneElement);

}  // namespace
