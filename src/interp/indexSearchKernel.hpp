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

/// What is known of the queries of a block before their bins are.
struct QueryRange {
  unsigned long first;  ///< Lowest bin of a query within the grid, and the highest.
  unsigned long last;
  bool isSorted;      ///< In order, so without NaN.
  bool mayBeOutside;  ///< Some are outside; NaN is not looked at.
};

/// The lowest and the highest query, or the ends of the grid where these are closer: side by side, so that a loop over
/// threads finds them.
template <class Chunk, class T>
GPURUNTIME_DEVICE void extremeQueries(const Chunk& chunk, const T* queries, unsigned long count, T& lowest,
                                      T& highest) {
  constexpr unsigned int lanes = 32;
  const auto some = chunk.template withShape<lanes>();
  PerThread<T, lanes> low, high;
  some.forEachThread([&](Thread thread) {
    low[thread] = lowest;
    high[thread] = highest;
  });
  for (unsigned long first = 0; first < count; first += lanes) {
    some.forEachThread(Live{count - first}, [&](Thread thread) {
      const T q = queries[first + thread.x];
      low[thread] = q < low[thread] ? q : low[thread];
      high[thread] = q > high[thread] ? q : high[thread];
    });
  }
  for (unsigned int i = 0; i < lanes; ++i) {
    lowest = low.slots()[i] < lowest ? low.slots()[i] : lowest;
    highest = high.slots()[i] > highest ? high.slots()[i] : highest;
  }
}

template <class Chunk, class T>
GPURUNTIME_DEVICE QueryRange rangeOfQueries(const Chunk& chunk, const T* grid, unsigned long n, const T* queries,
                                            unsigned long count) {
  const bool isSorted = queries[0] == queries[0] && !chunk.findsAny(Live{count - 1}, [=](Thread thread) {
    return !(queries[thread.x] <= queries[thread.x + 1]);
  });
  T lowest = grid[n - 1], highest = grid[0];
  if (isSorted) {
    lowest = queries[0];
    highest = queries[count - 1];
  } else {
    extremeQueries(chunk, queries, count, lowest, highest);
  }
  const T inverseStep = inverseFirstStep(grid);
  const auto last = static_cast<long long>(lastBin(n));
  const long long low = findQueryBinIdxInGrid(grid, lowest, n, inverseStep, 0);
  const long long high = findQueryBinIdxInGrid(grid, highest, n, inverseStep, low);
  const auto firstBin = static_cast<unsigned long>(low < 0 ? (low == BinAboveGrid ? last : 0) : low);
  const auto lastBin = static_cast<unsigned long>(high < 0 ? (high == BinAboveGrid ? last : 0) : high);
  return {firstBin, lastBin < firstBin ? firstBin : lastBin, isSorted, low < 0 || high < 0};
}

/// The bins of sorted queries, group by group: each goes on where the one before it ended.
template <class Chunk, class T>
GPURUNTIME_DEVICE void mergeBins(const Chunk& chunk, const T* grid, const QueryRange& range, const T* queries,
                                 unsigned long count, PerThread<long long, Chunk::size>& bins) {
  constexpr unsigned int lanes = 8;
  const auto group = chunk.template withShape<lanes>();
  unsigned long bin = range.first;
  for (unsigned long first = 0; first < count; first += lanes) {
    const Live live{count - first};
    const T highest = queries[count - first < lanes ? count - 1 : first + lanes - 1];
    PerThread<long long, lanes> found;
    group.forEachThread([&](Thread thread) { found[thread] = static_cast<long long>(bin); });
    while (bin < range.last && grid[bin + 1] <= highest) {
      const T point = grid[++bin];
      group.forEachThread(live, [&](Thread thread) { found[thread] += queries[first + thread.x] >= point ? 1 : 0; });
    }
    group.forEachThread(live, [&](Thread thread) {
      const platform::ThreadIndex own = first + thread.x;
      bins[Thread{own, 0, 0, own}] = found[thread];
    });
  }
}

/// The bins of queries by bisection, of all in the same number of steps.
template <class Chunk, class T>
GPURUNTIME_DEVICE void bisectBins(const Chunk& chunk, const T* grid, const QueryRange& range, const T* queries,
                                  unsigned long count, PerThread<long long, Chunk::size>& bins) {
  const auto first = static_cast<long long>(range.first);
  chunk.forEachThread(Live{count}, [=, &bins](Thread thread) { bins[thread] = first; });
  for (unsigned long candidates = range.last - range.first + 1; candidates > 1;) {
    const auto half = static_cast<long long>(candidates / 2);
    chunk.forEachThread(Live{count}, [=, &bins](Thread thread) {
      const long long probe = bins[thread] + half;
      bins[thread] = grid[probe] <= queries[thread.x] ? probe : bins[thread];
    });
    candidates -= static_cast<unsigned long>(half);
  }
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

/// The bins of `count` queries, each in the place of its thread. True if all are in the grid, but for NaN.
template <class Chunk, class T>
GPURUNTIME_DEVICE bool findBins(const Chunk& chunk, const QueryRange& range, const T* grid, unsigned long n,
                                const T* queries, unsigned long count, PerThread<long long, Chunk::size>& bins) {
  const unsigned long span = range.last - range.first;
  if (range.isSorted && span <= 4 * count) {
    mergeBins(chunk, grid, range, queries, count, bins);
  } else if (span < 16 || !guessBins(chunk, grid, n, queries, count, bins)) {
    bisectBins(chunk, grid, range, queries, count, bins);
  }
  if (range.isSorted && !range.mayBeOutside) return true;
  const T lowest = grid[0], highest = grid[n - 1];
  chunk.forEachThread(Live{count}, [=, &bins](Thread thread) {
    const T q = queries[thread.x];
    const long long notAbove = q > highest ? static_cast<long long>(BinAboveGrid) : bins[thread];
    const long long notBelow = q < lowest ? static_cast<long long>(BinBelowGrid) : notAbove;
    bins[thread] = q != q ? static_cast<long long>(BinNaNQuery) : notBelow;
  });
  return !range.mayBeOutside;
}
template <class Chunk, class T>
GPURUNTIME_DEVICE bool findBins(const Chunk& chunk, const T* grid, unsigned long n, const T* queries,
                                unsigned long count, PerThread<long long, Chunk::size>& bins) {
  return findBins(chunk, rangeOfQueries(chunk, grid, n, queries, count), grid, n, queries, count, bins);
}
template <class Chunk, class T>
GPURUNTIME_DEVICE bool findBins(const Chunk& chunk, const double2&, unsigned long n, const T* queries,
                                unsigned long count, PerThread<long long, Chunk::size>& bins) {
  chunk.forEachThread(Live{count},
                      [=, &bins](Thread thread) { bins[thread] = findQueryBinIdxInColonGrid(queries[thread.x], n); });
  return !chunk.findsAny(Live{count}, [&bins](Thread thread) { return bins[thread] < 0; });
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
