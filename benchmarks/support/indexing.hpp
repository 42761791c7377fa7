/// @file
/// Indices for the benchmarks of gathers and scatters.
#pragma once

#include "support/bench.hpp"

#include <algorithm>
#include <random>
#include <vector>

namespace benchsupport {

inline constexpr unsigned long indexCount = 1UL << 24;

template <class T>
DeviceArray<T> filledArray(unsigned long size) {
  DeviceArray<T> array(size);
  gpuruntime::recipes::fillOnDevice(array.data(), 7, array.bytes());
  return array;
}

/// What is chosen of an array: all but the first element; every other element in reverse; nine of every ten elements in
/// ascending order; each element once, in any order.
enum class Choice { all, everyOtherReversed, sorted, shuffled };

template <class I>
struct ChosenIndices;

template <>
struct ChosenIndices<double2> {
  ChosenIndices(unsigned long count, Choice choice)
      : extent(choice == Choice::all ? count + 1 : 2 * count),
        index(choice == Choice::all ? double2{2, 1} : double2{static_cast<double>(2 * count), -2}) {}

  static unsigned long bytes() { return 0; }

  unsigned long extent;
  double2 index;
};

template <>
struct ChosenIndices<const double*> {
  ChosenIndices(unsigned long count, Choice choice)
      : extent(choice == Choice::sorted ? count + count / 9 + 1 : count), list(count), index(list.data()) {
    std::vector<double> indices(count);
    for (unsigned long k = 0; k < count; ++k) {
      indices[k] = static_cast<double>(k + 1 + (choice == Choice::sorted ? k / 9 : 0));
    }
    if (choice == Choice::shuffled) std::shuffle(indices.begin(), indices.end(), std::minstd_rand());
    gpuruntime::recipes::copyToDevice(list.data(), indices.data(), count * sizeof(double));
    gpuruntime::recipes::synchronise();
  }

  unsigned long bytes() const { return list.bytes(); }

  unsigned long extent;
  DeviceArray<double> list;
  const double* index;
};

/// Whole columns but for their ends: rows 2 to count + 1 of count + 2, of every other column or of shuffled ones.
template <class I>
struct MatrixBlock {
  MatrixBlock(unsigned long chosenColumns, unsigned long count)
      : rows(count + 2),
        columns(chosenColumns, std::is_same_v<I, double2> ? Choice::everyOtherReversed : Choice::shuffled),
        elements(rows * columns.extent) {}

  unsigned long rows;
  ChosenIndices<I> columns;
  unsigned long elements;
};

}  // namespace benchsupport

#define GPURUNTIME_INDEX_BENCHMARKS_OF(benchmark, T)                       \
  GPURUNTIME_BENCHMARK(benchmark<T, double2, Choice::all>);                \
  GPURUNTIME_BENCHMARK(benchmark<T, double2, Choice::everyOtherReversed>); \
  GPURUNTIME_BENCHMARK(benchmark<T, const double*, Choice::sorted>);       \
  GPURUNTIME_BENCHMARK(benchmark<T, const double*, Choice::shuffled>)
#define GPURUNTIME_INDEX_BENCHMARKS(benchmark)              \
  GPURUNTIME_INDEX_BENCHMARKS_OF(benchmark, double);        \
  GPURUNTIME_INDEX_BENCHMARKS_OF(benchmark, float);         \
  GPURUNTIME_INDEX_BENCHMARKS_OF(benchmark, unsigned char); \
  GPURUNTIME_INDEX_BENCHMARKS_OF(benchmark, double2)
#define GPURUNTIME_BLOCK_BENCHMARKS(benchmark)                  \
  GPURUNTIME_BENCHMARK(benchmark<double, double2, 1024>);       \
  GPURUNTIME_BENCHMARK(benchmark<double, const double*, 1024>); \
  GPURUNTIME_BENCHMARK(benchmark<double, const double*, 16>);   \
  GPURUNTIME_BENCHMARK(benchmark<double, const double*, 3>);    \
  GPURUNTIME_BENCHMARK(benchmark<unsigned char, const double*, 1024>)
