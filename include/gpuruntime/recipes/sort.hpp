/// @file
/// Sorts along any dimension, with an index.
#pragma once

#include <gpuruntime/build/fillarraywithrunningindex.hpp>
#include <gpuruntime/elmath/permute.hpp>
#include <gpuruntime/recipes/allocator.hpp>
#include <gpuruntime/recipes/view.hpp>
#include <gpuruntime/sorting/sortMatrix.hpp>
#include <gpuruntime/sorting/sortVector.hpp>

#include <algorithm>

namespace gpuruntime::recipes {
namespace detail {

// Lines of this length and more are sorted one by one: a sort by column numbers moves those numbers, too.
inline constexpr unsigned long sortedAlone = 1UL << 16;

inline bool isSortedByKeys(const Line& line) {
  return line.S * line.O > 1 && line.L < sortedAlone;
}

// Exchanges the first two of three dimensions.
template <class T>
void exchange(CUstream_st* stream, T* output, const T* input, unsigned long first, unsigned long second,
              unsigned long pages) {
  const unsigned long from[] = {first, second, pages}, to[] = {second, first, pages}, order[] = {2, 1, 3};
  Permute::Invoker<T>()(stream, output, 3, to, input, 3, from, 3, order);
}

template <class T>
void sortLines(CUstream_st* stream, T* data, double* index, int* keys, unsigned long length, unsigned long lines,
               bool ascending) {
  const unsigned long n = length * lines;
  if (index != nullptr) FillArrayWithRunningIndex::Invoker<double>()(stream, n, index, 1, length);
  if (keys != nullptr) FillArrayWithRunningIndex::Invoker<int>()(stream, n, keys, length, lines);
  synchronise(stream);  // Sorts run on the default stream.
  if (keys != nullptr) return SortMatrix::Invoker<T>()(data, index, keys, n, ascending);
  for (unsigned long at = 0; at < n; at += length) {
    SortVector::Invoker<T>()(data + at, index == nullptr ? nullptr : index + at, length, ascending);
  }
}

template <class T>
void sortAlong(CUstream_st* stream, View<T> data, double* index, std::size_t dimension, bool ascending,
               Allocator& allocator);

}  // namespace detail

/// Bytes that sort takes of the allocator for an array of these extents; the library's sorts take memory of their own.
template <class T>
std::size_t sortWorkspace(const Extents& extents, std::size_t dimension, bool withIndex) {
  const unsigned long n = detail::product(extents);
  if (n == 0) return 0;
  const detail::Line line = detail::lineAlong("sortWorkspace", extents, dimension);
  return (detail::isSortedByKeys(line) ? detail::bytesOf<int>(n) : 0) +
         (line.S == 1 ? 0 : detail::bytesOf<T>(n) + (withIndex ? detail::bytesOf<double>(n) : 0));
}

/// Sorts an array in place along a dimension, counted from 0, each line by itself, and writes the place along the
/// dimension, from 1, at which each element stood before.
///
/// `T` is `double`, `double2`, `long long` or `unsigned long long`. Order, ties, NaNs and signed zeros are those of
/// SortVector: stable, NaNs last if ascending and first if descending, -0 equal to 0. An empty array does nothing.
///
/// Waits for the stream, then for the sorts, which run on the default stream; the stream must be one that waits for the
/// default stream. `index` does not overlap the data, unchecked.
/// @throws std::invalid_argument for a dimension that the array does not have, or an index of another size;
/// std::length_error for more than 2^31 - 1 lines shorter than 65536; std::bad_alloc if memory is missing, before
/// anything is written but where a sort itself lacks it.
template <class T>
void sort(CUstream_st* stream, View<T> data, View<double> index, std::size_t dimension, bool ascending = true,
          Allocator& allocator = deviceAllocator()) {
  detail::requireSize("sort", "index", index, data.size());
  detail::sortAlong<T>(stream, data, index.data(), dimension, ascending, allocator);
}

/// The same without an index: -0 is then less than 0.
template <class T>
void sort(CUstream_st* stream, View<T> data, std::size_t dimension, bool ascending = true,
          Allocator& allocator = deviceAllocator()) {
  detail::sortAlong<T>(stream, data, nullptr, dimension, ascending, allocator);
}

template <class T>
void detail::sortAlong(CUstream_st* stream, View<T> data, double* index, std::size_t dimension, bool ascending,
                       Allocator& allocator) {
  const Line line = lineAlong("sort", data.extents(), dimension);
  const unsigned long n = data.size(), lines = line.S * line.O;
  if (n == 0) return;
  const bool byKeys = isSortedByKeys(line);
  if (byKeys && lines > static_cast<unsigned long>(std::numeric_limits<int>::max())) {
    throw std::length_error("sort: data: expected at most 2^31 - 1 lines, came " + std::to_string(lines));
  }
  Temporary memory(allocator, sortWorkspace<T>(data.extents(), dimension, index != nullptr));
  int* const keys = byKeys ? memory.take<int>(n) : nullptr;
  if (line.S == 1) return sortLines(stream, data.data(), index, keys, line.L, lines, ascending);

  // Lines lie apart: bring them together, sort, and put them back.
  T* const together = memory.take<T>(n);
  double* const places = index == nullptr ? nullptr : memory.take<double>(n);
  exchange(stream, together, static_cast<const T*>(data.data()), line.S, line.L, line.O);
  sortLines(stream, together, places, keys, line.L, lines, ascending);
  exchange(stream, data.data(), static_cast<const T*>(together), line.L, line.S, line.O);
  if (index != nullptr) exchange(stream, index, static_cast<const double*>(places), line.L, line.S, line.O);
}

}  // namespace gpuruntime::recipes
