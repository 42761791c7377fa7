#include "support/indexing.hpp"

namespace {

using namespace benchsupport;

template <class T, class I, Choice choice>
void subsasgn(benchmark::State& state) {
  const ChosenIndices<I> indices(indexCount, choice);
  const DeviceArray<T> in = filledArray<T>(indexCount);
  DeviceArray<T> out = filledArray<T>(indices.extent);
  measure(state, indexCount, in.bytes() + indices.bytes(), in.bytes(), [&] {
    typename gpuruntime::Subsasgn3D<I, void*, void*>::template Invoker<T>()(nullptr, indexCount, out.data(), in.data(),
                                                                            indices.extent, indexCount, indices.index,
                                                                            1, 1, nullptr, 1, 1, nullptr);
  });
}
GPURUNTIME_INDEX_BENCHMARKS(subsasgn);

template <class T, class I2, unsigned long count1>
void subsasgnToBlock(benchmark::State& state) {
  const MatrixBlock<I2> block(indexCount / count1, count1);
  const DeviceArray<T> in = filledArray<T>(indexCount);
  DeviceArray<T> out = filledArray<T>(block.elements);
  measure(state, indexCount, in.bytes(), in.bytes(), [&] {
    typename gpuruntime::Subsasgn3D<double2, I2, void*>::template Invoker<T>()(
        nullptr, 0, out.data(), in.data(), block.rows, count1, {2, 1}, block.columns.extent, indexCount / count1,
        block.columns.index, 1, 1, nullptr);
  });
}
GPURUNTIME_BLOCK_BENCHMARKS(subsasgnToBlock);

template <class T>
void subsasgnScalar(benchmark::State& state) {
  DeviceArray<T> out(indexCount + 1);
  measure(state, indexCount, 0, indexCount * sizeof(T), [&] {
    typename gpuruntime::SubsasgnScalar3D<double2, void*, void*>::template Invoker<T>()(
        nullptr, indexCount, out.data(), T(7), indexCount + 1, indexCount, {2, 1}, 1, 1, nullptr, 1, 1, nullptr);
  });
}
GPURUNTIME_BENCHMARK(subsasgnScalar<double>);
GPURUNTIME_BENCHMARK(subsasgnScalar<unsigned char>);

}  // namespace
