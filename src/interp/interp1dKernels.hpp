/// @file
/// The kernels of one dimension that find their bins themselves, and the members of the families that call them.
#pragma once

#include "interp/indexSearchKernel.hpp"
#include "interp/interpKernels.hpp"

#define GPURUNTIME_INSTANTIATE_ON_GRID(Family, GridT)       \
  template struct Family::Invoker<GridT, double, double>;   \
  template struct Family::Invoker<GridT, double, float>;    \
  template struct Family::Invoker<GridT, float, float>;     \
  template struct Family::Invoker<GridT, double2, double2>; \
  template struct Family::Invoker<GridT, double2, float2>;  \
  template struct Family::Invoker<GridT, float2, float2>

/// Instantiates the twelve members of a family of one dimension.
#define GPURUNTIME_INSTANTIATE_1D(Family)         \
  GPURUNTIME_INSTANTIATE_ON_GRID(Family, double); \
  GPURUNTIME_INSTANTIATE_ON_GRID(Family, float)

namespace gpuruntime::interp {

/// Threads of a block and queries of a thread: a tile of queries and results stays within 7680 bytes each.
template <class ResT, class GridT>
struct Tile1D {
  static constexpr bool isWide = sizeof(ResT) == 16;
  static constexpr bool isNarrow = sizeof(ResT) == 4 && sizeof(GridT) == 4;
  static constexpr unsigned int threads = isWide ? 160 : (isNarrow ? 256 : 192);
  static constexpr unsigned int queries = isWide ? 3 : (isNarrow ? 7 : 5);
  static constexpr unsigned int size = threads * queries;
};

template <class ResT, class GridT, class ValT>
struct Interp1DKernel : BlockFunctor<Tile1D<ResT, GridT>::threads> {
  using Tile = Tile1D<ResT, GridT>;
  using Block = platform::Block<Tile::threads>;

  // Results take the place of queries of their type.
  struct SharedQueries {
    GridT queryInShm[Tile::size];
    GPURUNTIME_DEVICE ResT* results() { return queryInShm; }
  };
  struct SharedQueriesAndResults {
    GridT queryInShm[Tile::size];
    ResT outValInShm[Tile::size];
    GPURUNTIME_DEVICE ResT* results() { return outValInShm; }
  };
  using Shared = std::conditional_t<std::is_same_v<ResT, GridT>, SharedQueries, SharedQueriesAndResults>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockIterator& it, ResT* out,
                                      const GridT* grid, const ValT* values, const GridT* queries, unsigned long n,
                                      unsigned long count, Methods methods, ResT extrapolation) {
    if constexpr (platform::prefersWholeBlocks) {
      interpolateTile(block, it, out, grid, values, queries, n, count, methods, extrapolation);
    } else {
      GPURUNTIME_SHARED(Shared, shared);
      copyDataToShm<Tile::queries, 1>(block, it, shared.queryInShm, queries, count, 0);
      block.forEachThread([&](Thread thread) {
        const unsigned long first = it.block * Tile::size;
        locateAndComputeInShm(shared, thread.x * Tile::queries, Live::after(first, count), grid, values, n, methods,
                              extrapolation);
      });
      block.sync();
      copyDataToGlobalMem<Tile::queries, 1>(block, it, out, shared.results(), count, 0);
    }
  }

 private:
  static GPURUNTIME_DEVICE void interpolateTile(const Block& block, const cuda::Fixed1DBlockIterator& it, ResT* out,
                                                const GridT* grid, const ValT* values, const GridT* queries,
                                                unsigned long n, unsigned long count, Methods methods,
                                                ResT extrapolation) {
    const auto tile = block.template withShape<Tile::size>();
    const unsigned long first = it.block * Tile::size;
    const auto live = gpucommon::hostDeviceMath::minSizeT<unsigned long>(Live::after(first, count), Tile::size);
    if (live == 0) return;
    const QueryRange range = rangeOfQueries(tile, grid, n, queries + first, live);
    const bool canBePlain = methods.inRange == InterpTypeLinear && !range.mayBeOutside;
    platform::OutputWindow<ResT, Tile::size> window(out, first, live, count);
    ResT* const target = window.pointer() + first;
    const auto inBins = [&](bool mayBePlain) {
      interpolateInBins(tile, target, range, mayBePlain, grid, values, queries + first, n, live, methods,
                        extrapolation);
    };
    if (canBePlain && range.isSorted && range.last - range.first <= live) {
      runPlainFirst(tile, Live{live}, target, true, [&](auto isPlain) {
        if constexpr (isPlain.value) {
          interpolateInOrder(tile, target, range, grid, values, queries + first, live);
        } else {
          inBins(false);
        }
      });
    } else {
      inBins(canBePlain);
    }
    window.flush(tile);
  }

  template <class Block>
  static GPURUNTIME_DEVICE void interpolateInBins(const Block& tile, ResT* target, const QueryRange& range,
                                                  bool canBePlain, const GridT* grid, const ValT* values,
                                                  const GridT* queries, unsigned long n, unsigned long live,
                                                  Methods methods, ResT extrapolation) {
    PerThread<long long, Tile::size> bins;
    findBins(tile, range, grid, n, queries, live, bins);
    runPlainFirst(tile, Live{live}, target, canBePlain, [&](auto isPlain) {
      tile.forEachThread(Live{live}, [=, &bins](Thread thread) {
        const auto place = placeQuery<isPlain.value>(grid, queries[thread.x], bins[thread], n, methods);
        target[thread.x] = interpolate<ResT, isPlain.value>(place, values, extrapolation);
      });
    });
  }

  /// Sorted plain queries, bin by bin: nothing is looked up by a query's own bin.
  template <class Block>
  static GPURUNTIME_DEVICE void interpolateInOrder(const Block& tile, ResT* target, const QueryRange& range,
                                                   const GridT* grid, const ValT* values, const GridT* queries,
                                                   unsigned long live) {
    unsigned long first = 0;
    for (unsigned long bin = range.first; first < live; ++bin) {
      const GridT lower = grid[bin], upper = grid[bin + 1], inverse = GridT(1) / (upper - lower);
      const ValT left = values[bin], right = values[bin + 1];
      unsigned long end = live;
      if (bin < range.last) {
        for (end = first; queries[end] < upper;) ++end;
      }
      const GridT* const own = queries + first;
      ResT* const results = target + first;
      tile.forEachThread(Live{end - first}, [=](Thread thread) {
        results[thread.x] = linearInterpCachedVal<ResT>(left, right, (own[thread.x] - lower) * inverse);
      });
      first = end;
    }
  }

  /// Neighbouring queries, of which the next is often in the same bin: then neither grid nor values are read again.
  static GPURUNTIME_DEVICE void locateAndComputeInShm(Shared& shared, unsigned int first, unsigned long live,
                                                      const GridT* grid, const ValT* values, unsigned long n,
                                                      Methods methods, ResT extrapolation) {
    const QuerySearch<GridT> search(grid, n);
    long long bin = 0, previous = BinNaNQuery;
    ValT left{}, right{};
    for (unsigned int position = first; position < first + Tile::queries && position < live; ++position) {
      const GridT q = shared.queryInShm[position];
      long long found = BinNaNQuery;
      if (q == q) found = bin = search.find(q, bin);
      const auto place = placeQuery(grid, q, found, n, methods);
      if (q == q && bin != previous) {
        left = platform::readOnlyLoad(values + place.bin);
        right = platform::readOnlyLoad(values + place.bin + 1);
        previous = bin;
      }
      shared.results()[position] = interpolateCachedVal<ResT>(place, left, right, extrapolation);
    }
  }
};

template <class ResT, class GridT, class ValT>
struct Interp1DKernel_ColonGrid : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, ResT* out, double2 grid, const ValT* values,
                                      const GridT* queries, unsigned long n, Methods methods, ResT extrapolation) {
    if (it.isOutside()) return;
    const GridT q = queries[it.index];
    const auto place = placeQuery(grid, q, findQueryBinIdxInColonGrid(q, n), n, methods);
    out[it.index] = interpolate<ResT>(place, values, extrapolation);
  }
};

}  // namespace gpuruntime::interp
