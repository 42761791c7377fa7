/// @file
/// The bins of queries: one by one with a hint, and those of a whole block at once.
#pragma once

#include <gpuruntime/interptype.hpp>
#include <gpuruntime/launcher/elementwise.hpp>
#include <gpuruntime/launcher/fixed1dblock.hpp>

#include <cmath>

#include "interp/interpKernels.hpp"

namespace gpuruntime::interp {

using platform::Live;
using platform::PerThread;
using platform::Thread;

// --- One query at a time ---

/// The bin that q would have if all bins were as wide as the first.
template <class T>
GPURUNTIME_DEVICE long long findQueryBinIdxInUniformGrid(const T* grid, T q, unsigned long n, T inverseFirstStep) {
  if (q != q) return BinNaNQuery;
  if (q < grid[0]) return BinBelowGrid;
  if (q > grid[n - 1]) return BinAboveGrid;
  return gpucommon::castdetail::truncateTo<int>((q - grid[0]) * inverseFirstStep);
}

template <class T>
GPURUNTIME_DEVICE bool isInBin(const T* grid, T q, unsigned long bin) {
  return gridPoint(grid, bin) <= q && q < gridPoint(grid, bin + 1);
}

/// The bin of q; `hint` changes only how soon it is found.
template <class T>
GPURUNTIME_DEVICE long long findQueryBinIdxInGrid(const T* grid, T q, unsigned long n, T inverseFirstStep,
                                                  long long hint) {
  // Neighbours are often in one bin, and bins are often of one width.
  const auto last = static_cast<unsigned int>(lastBin(n));
  if (static_cast<unsigned long>(hint) <= last && isInBin(grid, q, static_cast<unsigned long>(hint))) return hint;
  const long long guess = findQueryBinIdxInUniformGrid(grid, q, n, inverseFirstStep);
  if (guess < 0) return guess;
  if (guess <= last && isInBin(grid, q, static_cast<unsigned long>(guess))) return guess;

  // Both ends, then bisection.
  if (q < gridPoint(grid, 1)) return 0;
  if (q >= gridPoint(grid, last)) return last;
  unsigned int low = 1, high = last;
  unsigned int probe = hint >= 1 && hint <= last ? static_cast<unsigned int>(hint) : last / 2;
  while (!isInBin(grid, q, probe)) {
    if (gridPoint(grid, probe) <= q) {
      low = probe + 1;
    } else {
      high = probe;
    }
    probe = low + (high - low) / 2;
  }
  return probe;
}

/// The bin of q in the grid 1, 2, ..., n. Without branches.
template <class T>
GPURUNTIME_DEVICE long long findQueryBinIdxInColonGrid(T q, unsigned long n) {
  const T highest = static_cast<T>(n);
  const bool isInside = (q >= T(1)) & (q < highest);
  const T below = std::floor(q) - T(1);
  const long long inside = exactInteger(isInside ? below : T(0));
  const long long last = static_cast<long long>(n - 2);
  const long long atEnd = q == highest ? last : static_cast<long long>(BinNaNQuery);
  const long long above = q > highest ? static_cast<long long>(BinAboveGrid) : atEnd;
  const long long outside = q < T(1) ? static_cast<long long>(BinBelowGrid) : above;
  return isInside ? inside : outside;
}

template <class T>
GPURUNTIME_DEVICE T inverseFirstStep(const T* grid) {
  return T(1) / (grid[1] - grid[0]);
}

/// The search in a grid of either form.
template <class T>
struct QuerySearch {
  const T* grid;
  unsigned long n;
  T inverseStep;

  GPURUNTIME_DEVICE QuerySearch(const T* grid, unsigned long n)
      : grid(grid), n(n), inverseStep(inverseFirstStep(grid)) {}
  GPURUNTIME_DEVICE long long find(T q, long long hint) const {
    return findQueryBinIdxInGrid(grid, q, n, inverseStep, hint);
  }
};
template <>
struct QuerySearch<double2> {
  unsigned long n;

  GPURUNTIME_DEVICE QuerySearch(double2, unsigned long n) : n(n) {}
  template <class T>
  GPURUNTIME_DEVICE long long find(T q, long long) const {
    return findQueryBinIdxInColonGrid(q, n);
  }
};
template <class T>
QuerySearch(const T*, unsigned long) -> QuerySearch<T>;
QuerySearch(double2, unsigned long)->QuerySearch<double2>;

// --- A block at once ---

struct BinRange {
  unsigned long first;
  unsigned long last;
};

/// A range of bins that holds those of all queries within the grid.
template <class Chunk, class T>
GPURUNTIME_DEVICE BinRange rangeOfBins(const Chunk& chunk, const T* grid, unsigned long n, const T* queries,
                                       unsigned long count) {
  // The extremes: side by side, so that a loop over threads finds them.
  constexpr unsigned int lanes = 16;
  const auto some = chunk.template withShape<lanes>();
  PerThread<T, lanes> low, high;
  some.forEachThread([&](Thread thread) {
    low[thread] = grid[n - 1];
    high[thread] = grid[0];
  });
  for (unsigned long first = 0; first < count; first += lanes) {
    some.forEachThread(Live{count - first}, [&](Thread thread) {
      const T q = queries[first + thread.x];
      low[thread] = q < low[thread] ? q : low[thread];
      high[thread] = q > high[thread] ? q : high[thread];
    });
  }
  T lowest = grid[n - 1], highest = grid[0];
  for (unsigned int i = 0; i < lanes; ++i) {
    lowest = low.slots()[i] < lowest ? low.slots()[i] : lowest;
    highest = high.slots()[i] > highest ? high.slots()[i] : highest;
  }
  // Never NaN, which compares false.
  const T inverseStep = inverseFirstStep(grid);
  const auto last = static_cast<long long>(lastBin(n));
  const long long first = findQueryBinIdxInGrid(grid, lowest, n, inverseStep, 0);
  const long long end = findQueryBinIdxInGrid(grid, highest, n, inverseStep, first);
  const auto firstBin = static_cast<unsigned long>(first < 0 ? 0 : first);
  const auto endBin = static_cast<unsigned long>(end < 0 ? (end == BinAboveGrid ? last : 0) : end);
  return {firstBin, endBin < firstBin ? firstBin : endBin};
}

/// Writes the bins that the queries would have if all bins had one width. True if they do have these.
template <class Chunk, class T>
GPURUNTIME_DEVICE bool guessBins(const Chunk& chunk, const T* grid, unsigned long n, const T* queries,
                                 unsigned long count, PerThread<long long, Chunk::size>& bins) {
  const T lowest = grid[0], highest = grid[n - 1];
  const auto last = static_cast<long long>(lastBin(n));
  const T mostSteps = static_cast<T>(last), inverseStep = (mostSteps + T(1)) / (highest - lowest);
  chunk.forEachThread(Live{count}, [=, &bins](Thread thread) {
    const T steps = (queries[thread.x] - lowest) * inverseStep;
    const T notTooMany = steps < mostSteps ? steps : mostSteps;
    const long long bin = exactInteger(std::floor(steps > T(0) ? notTooMany : T(0)));
    bins[thread] = bin < last ? bin : last;
  });
  return !chunk.findsAny(Live{count}, [=, &bins](Thread thread) {
    const T q = queries[thread.x];
    const long long bin = bins[thread];
    const bool isOutside = !(q >= lowest) | (q > highest);
    const bool isBelowUpper = (q < grid[bin + 1]) | (bin == last);
    return !(isOutside | ((grid[bin] <= q) & isBelowUpper));
  });
}

/// The bins of `count` queries, each in the place of its thread.
template <class Chunk, class T>
GPURUNTIME_DEVICE void findBins(const Chunk& chunk, const T* grid, unsigned long n, const T* queries,
                                unsigned long count, PerThread<long long, Chunk::size>& bins) {
  // Queries in order are in few bins. Others may be where they would be in bins of one width.
  constexpr unsigned long fewBins = 16;
  const BinRange range = rangeOfBins(chunk, grid, n, queries, count);
  unsigned long candidates = range.last - range.first + 1;
  if (candidates <= fewBins || !guessBins(chunk, grid, n, queries, count, bins)) {
    // Bisection of all queries in the same number of steps.
    const auto first = static_cast<long long>(range.first);
    chunk.forEachThread(Live{count}, [=, &bins](Thread thread) { bins[thread] = first; });
    while (candidates > 1) {
      const auto half = static_cast<long long>(candidates / 2);
      chunk.forEachThread(Live{count}, [=, &bins](Thread thread) {
        const long long probe = bins[thread] + half;
        bins[thread] = grid[probe] <= queries[thread.x] ? probe : bins[thread];
      });
      candidates -= static_cast<unsigned long>(half);
    }
  }
  const T lowest = grid[0], highest = grid[n - 1];
  chunk.forEachThread(Live{count}, [=, &bins](Thread thread) {
    const T q = queries[thread.x];
    const long long notAbove = q > highest ? static_cast<long long>(BinAboveGrid) : bins[thread];
    const long long notBelow = q < lowest ? static_cast<long long>(BinBelowGrid) : notAbove;
    bins[thread] = q != q ? static_cast<long long>(BinNaNQuery) : notBelow;
  });
}
template <class Chunk, class T>
GPURUNTIME_DEVICE void findBins(const Chunk& chunk, const double2&, unsigned long n, const T* queries,
                                unsigned long count, PerThread<long long, Chunk::size>& bins) {
  chunk.forEachThread(Live{count},
                      [=, &bins](Thread thread) { bins[thread] = findQueryBinIdxInColonGrid(queries[thread.x], n); });
}

// --- Tiles in shared storage ---

/// Moves `count` elements at most between an array and a tile in shared storage, `loads` for each thread, thread by
/// thread. A block has `chunks` tiles, and this is the one at `offset`.
template <unsigned int loads, unsigned int chunks, class Block, class Move>
GPURUNTIME_DEVICE void forTile(const Block& block, const cuda::Fixed1DBlockIterator& it, unsigned long count,
                               unsigned int offset, Move move) {
  const unsigned int size = block.shape().x;
  const auto first = static_cast<unsigned int>(it.block) * loads * chunks * size + offset;
  block.forEachThread([&](Thread thread) {
    for (unsigned int k = 0; k < loads; ++k) {
      const unsigned int position = static_cast<unsigned int>(thread.x) + k * size;
      if (first + position < count) move(position, first + position);
    }
  });
  block.sync();
}
template <unsigned int loads, unsigned int chunks, class Block, class T>
GPURUNTIME_DEVICE void copyDataToShm(const Block& block, const cuda::Fixed1DBlockIterator& it, T* tile, const T* data,
                                     unsigned long count, unsigned int offset) {
  forTile<loads, chunks>(block, it, count, offset,
                         [=](unsigned int position, unsigned int index) { tile[position] = data[index]; });
}
template <unsigned int loads, unsigned int chunks, class Block, class T>
GPURUNTIME_DEVICE void copyDataToGlobalMem(const Block& block, const cuda::Fixed1DBlockIterator& it, T* data,
                                           const T* tile, unsigned long count, unsigned int offset) {
  forTile<loads, chunks>(block, it, count, offset,
                         [=](unsigned int position, unsigned int index) { data[index] = tile[position]; });
}

}  // namespace gpuruntime::interp
