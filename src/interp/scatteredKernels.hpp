/// @file
/// Queries that each have coordinates of their own: one of them after the other, and a block of them at once.
#pragma once

#include "interp/interpDimensions.hpp"

namespace gpuruntime::interp {

template <unsigned int D, class GridArg, class T, class V>
struct Scattered {
  using C = CoordinateOf<GridArg>;

  Axes<D, GridArg> grids;
  Axes<D, const T*> queries;
  Field<V> field;

  /// The value of query i, whose bins are known.
  template <bool isPlain = false>
  GPURUNTIME_DEVICE V valueOf(unsigned long i, const long long* bins, const Sizes<D>& sizes,
                              const Sizes<D>& strides) const {
    Places<D, C> places;
    platform::unrolled<D>([&](auto d) {
      places.of[d] = placeQuery<isPlain>(grids.of[d], queries.of[d][i], bins[d], sizes.of[d], field.methods);
    });
    return interpolateAt<isPlain>(places, field, strides);
  }
};

/// Searches query i in all dimensions. `bins` are hints on entry.
template <unsigned int D, class GridArg, class T, class V>
GPURUNTIME_DEVICE void doNDIndexSearch(long long* bins, const Scattered<D, GridArg, T, V>& scattered,
                                       const Sizes<D>& sizes, unsigned long i) {
  platform::unrolled<D>([&](auto d) {
    bins[d] = QuerySearch(scattered.grids.of[d], sizes.of[d]).find(scattered.queries.of[d][i], bins[d]);
  });
}

/// Queries [first, first + count), SIZE at most.
template <unsigned int SIZE, class Block, unsigned int D, class GridArg, class T, class V>
GPURUNTIME_DEVICE void interpolateChunk(const Block& block, V* out, const Scattered<D, GridArg, T, V>& scattered,
                                        const Sizes<D>& sizes, unsigned long first, unsigned long count,
                                        unsigned long total) {
  const auto chunk = block.template withShape<SIZE>();
  PerThread<long long, SIZE> bins[D];
  bool canBePlain = scattered.field.methods.inRange == InterpTypeLinear;
  platform::unrolled<D>([&](auto d) {
    canBePlain &= findBins(chunk, scattered.grids.of[d], sizes.of[d], scattered.queries.of[d] + first, count, bins[d]);
  });
  const Sizes<D> strides = sizes.strides();
  platform::OutputWindow<V, SIZE> window(out, first, count, total);
  V* const target = window.pointer() + first;
  runPlainFirst(chunk, Live{count}, target, canBePlain, [&](auto isPlain) {
    chunk.forEachThread(Live{count}, [=, &bins](Thread thread) {
      long long own[D];
      platform::unrolled<D>([&](auto d) { own[d] = bins[d][thread]; });
      target[thread.x] = scattered.template valueOf<isPlain.value>(first + thread.x, own, sizes, strides);
    });
  });
  window.flush(chunk);
}

constexpr unsigned int scatteredThreads = 128, queriesPerThread = 10;

/// A block of 128 threads on 1280 queries, with the sizes of the values as `SizesOf()()` reads them.
template <unsigned int D, class GridArg, class T, class V, class SizesOf>
struct ScatteredKernel : BlockFunctor<scatteredThreads> {
  using Block = platform::Block<scatteredThreads>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockIterator& it, V* out,
                                      Scattered<D, GridArg, T, V> scattered, unsigned long count) {
    const Sizes<D> sizes = firstSizes<D>(SizesOf::read());
    const unsigned long begin = it.block * scatteredThreads * queriesPerThread;
    if constexpr (platform::prefersWholeBlocks) {
      constexpr unsigned int chunk = 256;
      const unsigned long end = begin + scatteredThreads * queriesPerThread;
      for (unsigned long first = begin; first < end && first < count; first += chunk) {
        const unsigned long live = Live::after(first, count);
        interpolateChunk<chunk>(block, out, scattered, sizes, first, live < chunk ? live : chunk, count);
      }
    } else {
      const Sizes<D> strides = sizes.strides();
      block.forEachThread([&](Thread thread) {
        long long bins[D] = {};
        for (unsigned int k = 0; k < queriesPerThread; ++k) {
          const unsigned long i = begin + thread.x + k * scatteredThreads;
          if (i >= count) break;
          doNDIndexSearch(bins, scattered, sizes, i);
          out[i] = scattered.valueOf(i, bins, sizes, strides);
        }
      });
    }
  }
};

template <class Functor, class V, class Queries>
void launchScattered(CUstream_st* stream, V* out, const Queries& queries, unsigned long count) {
  const unsigned long perThread = queriesPerThread;
  fixed1dblock::launchWithDeviceFunctor<Functor>(stream,
                                                 gpucommon::hostDeviceMath::ceiledIntegerDivision(count, perThread),
                                                 scatteredThreads, out, queries, count);
}

}  // namespace gpuruntime::interp
