#include <array>

#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T, std::size_t RANK>
void permuteSizes(benchmark::State& state, const std::array<unsigned long, RANK>& size,
                  const std::array<unsigned long, RANK>& order) {
  std::array<unsigned long, RANK> permuted;
  unsigned long count = 1;
  for (std::size_t k = 0; k < RANK; ++k) {
    permuted[k] = size[order[k] - 1];
    count *= size[k];
  }
  DeviceArray<T> in(count), out(count);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  measure(state, count, in.bytes(), in.bytes(), [&] {
    typename gpuruntime::Permute::Invoker<T>()(nullptr, out.data(), RANK, permuted.data(), in.data(), RANK, size.data(),
                                               RANK, order.data());
  });
}

// 512 MiB, in powers of two, the first dimensions the longer ones: 512 x 512 x 256 of double.
template <class T, unsigned long... ORDER>
void permute(benchmark::State& state) {
  constexpr std::size_t rank = sizeof...(ORDER);
  std::array<unsigned long, rank> size;
  size.fill(1);
  for (unsigned long count = 1, k = 0; count < (1UL << 29) / sizeof(T); count *= 2, k = (k + 1) % rank) size[k] *= 2;
  permuteSizes<T, rank>(state, size, {ORDER...});
}
#define GPURUNTIME_BENCHMARK_ORDERS(T)       \
  GPURUNTIME_BENCHMARK(permute<T, 2, 1, 3>); \
  GPURUNTIME_BENCHMARK(permute<T, 3, 1, 2>); \
  GPURUNTIME_BENCHMARK(permute<T, 3, 2, 1>); \
  GPURUNTIME_BENCHMARK(permute<T, 1, 3, 2>); \
  GPURUNTIME_BENCHMARK(permute<T, 4, 3, 2, 1>)
GPURUNTIME_BENCHMARK_ORDERS(unsigned char);
GPURUNTIME_BENCHMARK_ORDERS(float);
GPURUNTIME_BENCHMARK_ORDERS(double);
GPURUNTIME_BENCHMARK_ORDERS(double2);

// Runs that begin anywhere in a cache line.
template <class T, unsigned long... ORDER>
void permuteOddSizes(benchmark::State& state) {
  permuteSizes<T, 3>(state, {453, 469, 469}, {ORDER...});
}
GPURUNTIME_BENCHMARK(permuteOddSizes<unsigned char, 3, 2, 1>);
GPURUNTIME_BENCHMARK(permuteOddSizes<float, 3, 2, 1>);
GPURUNTIME_BENCHMARK(permuteOddSizes<float, 1, 3, 2>);

// The three colours of each pixel side by side, to three planes and back.
template <class T>
void permuteToPlanes(benchmark::State& state) {
  permuteSizes<T, 3>(state, {3, 4096, 4096}, {2, 3, 1});
}
template <class T>
void permuteFromPlanes(benchmark::State& state) {
  permuteSizes<T, 3>(state, {4096, 4096, 3}, {3, 1, 2});
}
GPURUNTIME_BENCHMARK(permuteToPlanes<unsigned char>);
GPURUNTIME_BENCHMARK(permuteFromPlanes<unsigned char>);
GPURUNTIME_BENCHMARK(permuteToPlanes<float>);
GPURUNTIME_BENCHMARK(permuteFromPlanes<float>);

void permuteOfOneElement(benchmark::State& state) {
  DeviceArray<double> in(1), out(1);
  const unsigned long size[] = {1, 1}, order[] = {2, 1};
  measureOneElement(state, [&] {
    gpuruntime::Permute::Invoker<double>()(nullptr, out.data(), 2, size, in.data(), 2, size, 2, order);
  });
}
GPURUNTIME_BENCHMARK_ONE(permuteOfOneElement);

}  // namespace
