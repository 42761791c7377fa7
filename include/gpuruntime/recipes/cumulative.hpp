/// @file
/// Cumulative sums and products of any length along any dimension.
///
/// **Order.** It depends on the length L of the dimension alone, and on S, the product of the extents in front of it,
/// being 1 or not. Up to chunkLength elements, a line is scanned as CumSum does: as a segment where S is 1, otherwise
/// from left to right. A longer one is cut into chunks of chunkLength elements, the last one shorter; each chunk is
/// scanned by itself, then their totals are, in the same way, and every chunk but the first takes in the running total
/// of those in front by CumSumAdjust.
#pragma once

#include <gpuruntime/recipes/allocator.hpp>
#include <gpuruntime/recipes/view.hpp>
#include <gpuruntime/reductions/cumprod.hpp>
#include <gpuruntime/reductions/cumsum.hpp>

namespace gpuruntime::recipes {

/// Elements of a chunk: enough work for a block, and enough blocks for a GPU from some millions of elements on.
inline constexpr unsigned long chunkLength = 16384;

namespace detail {

inline unsigned long chunksOf(unsigned long length) {
  return length / chunkLength + (length % chunkLength != 0);
}

/// Scans all lines of an array by CumSum and CumSumAdjust, or their like, in the order above.
template <class T, class Scan, class Adjust>
struct LineScan {
  // Chunks of several lines can be scanned by one call where none is shorter than the others.
  static bool isCutEvenly(const Line& line) { return line.L % chunkLength == 0 || (line.S == 1 && line.O == 1); }

  /// Elements that run() needs for totals.
  static unsigned long totalsOf(const Line& line) {
    if (line.L <= chunkLength) return line.S * line.O;
    const unsigned long chunks = chunksOf(line.L), groups = isCutEvenly(line) ? line.O : 1;
    return line.S * chunks * groups + totalsOf({line.S, chunks, groups});
  }

  static void run(CUstream_st* stream, T* data, T* totals, const Line& line) {
    const auto [S, L, O] = line;
    if (L <= chunkLength) {
      Scan()(stream, totals, data, S * L * O, L, S);
    } else if (isCutEvenly(line)) {
      const unsigned long chunks = chunksOf(L);
      Scan()(stream, totals, data, S * L * O, chunkLength, S);
      run(stream, totals, totals + S * chunks * O, {S, chunks, O});
      Adjust()(stream, totals, data, S * L * O, chunkLength, chunks, S);
    } else {
      for (unsigned long group = 0; group < O; ++group) runGroup(stream, data + group * S * L, totals, S, L);
    }
  }

 private:
  // One group of S lines, whose last chunk is short.
  static void runGroup(CUstream_st* stream, T* data, T* totals, unsigned long S, unsigned long L) {
    if (S == 1) return run(stream, data, totals, {1, L, 1});
    const unsigned long wholeChunks = L / chunkLength, rest = L % chunkLength, head = L - rest;
    run(stream, data, totals, {S, head, 1});
    Scan()(stream, totals + S * wholeChunks, data + S * head, S * rest, rest, S);
    // As the second of two chunks, of which the first, as many rows before it, stays as it is.
    Adjust()(stream, totals + S * (wholeChunks - 1), data + S * (head - rest), 2 * S * rest, rest, 2, S);
  }
};

template <class T>
using SumScan = LineScan<T, CumSum::Invoker<T>, CumSumAdjust::Invoker<T>>;
template <class T>
using ProductScan = LineScan<T, CumProd::Invoker<T>, CumProdAdjust::Invoker<T>>;

template <class LineScan, class T>
void scanAlong(const char* recipe, CUstream_st* stream, View<T> data, std::size_t dimension, Allocator& allocator) {
  const Line line = lineAlong(recipe, data.extents(), dimension);
  if (data.size() == 0) return;
  const unsigned long totals = LineScan::totalsOf(line);
  Temporary memory(allocator, bytesOf<T>(totals));
  LineScan::run(stream, data.data(), memory.template take<T>(totals), line);
}

}  // namespace detail

/// Bytes that cumulativeSum and cumulativeProduct take for an array of these extents.
template <class T>
std::size_t cumulativeWorkspace(const Extents& extents, std::size_t dimension) {
  if (detail::product(extents) == 0) return 0;
  return detail::bytesOf<T>(detail::SumScan<T>::totalsOf(detail::lineAlong("cumulativeWorkspace", extents, dimension)));
}

/// Replaces each element by the sum of it and all in front of it along a dimension, counted from 0, in the arithmetic
/// of CumSum<T>.
///
/// `T` is any element type. An empty array does nothing. In a chunk behind the first, integers are clamped twice: in
/// the chunk's own sums, and where these join the running total.
/// @throws std::invalid_argument for a dimension that the array does not have; std::bad_alloc if memory is missing.
/// Nothing is written then.
template <class T>
void cumulativeSum(CUstream_st* stream, View<T> data, std::size_t dimension, Allocator& allocator = deviceAllocator()) {
  detail::scanAlong<detail::SumScan<T>>("cumulativeSum", stream, data, dimension, allocator);
}

/// The same with products, in the arithmetic of CumProd<T>.
template <class T>
void cumulativeProduct(CUstream_st* stream, View<T> data, std::size_t dimension,
                       Allocator& allocator = deviceAllocator()) {
  detail::scanAlong<detail::ProductScan<T>>("cumulativeProduct", stream, data, dimension, allocator);
}

}  // namespace gpuruntime::recipes
