#include <gpuruntime/interp/indexSearch.hpp>

#include "interp/indexSearchKernel.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace interp {
namespace {

constexpr unsigned int searchThreads = 192, loads = 3, chunks = 2;
constexpr unsigned int tileSize = searchThreads * loads;
constexpr unsigned int queriesPerThread = 5;  // In order, so that a bin found is a hint for the next.

template <class T>
struct FindQueryInSingleDim : BlockFunctor<searchThreads> {
  struct Shared {
    T queryInShm[tileSize];
    long long binIdxInShm[tileSize];
  };

  static GPURUNTIME_DEVICE void apply(const platform::Block<searchThreads>& block, const cuda::Fixed1DBlockIterator& it,
                                      long long* bins, const T* grid, const T* queries, unsigned long n,
                                      unsigned long count) {
    if constexpr (platform::prefersWholeBlocks) {
      for (unsigned int c = 0; c < chunks; ++c) {
        const unsigned long first = (it.block * chunks + c) * tileSize;
        findTile(block, bins + first, grid, queries + first, n, Live::after(first, count));
      }
    } else {
      GPURUNTIME_SHARED(Shared, shared);
      for (unsigned int c = 0; c < chunks; ++c) findInShm(block, it, shared, bins, grid, queries, n, count, c);
    }
  }

 private:
  static GPURUNTIME_DEVICE void findTile(const platform::Block<searchThreads>& block, long long* bins, const T* grid,
                                         const T* queries, unsigned long n, unsigned long live) {
    const auto tile = block.template withShape<tileSize>();
    const unsigned long count = gpucommon::hostDeviceMath::minSizeT<unsigned long>(live, tileSize);
    if (count == 0) return;
    PerThread<long long, tileSize> found;
    findBins(tile, grid, n, queries, count, found);
    tile.forEachThread(Live{count}, [=, &found](Thread thread) { bins[thread.x] = found[thread]; });
  }

  static GPURUNTIME_DEVICE void findInShm(const platform::Block<searchThreads>& block,
                                          const cuda::Fixed1DBlockIterator& it, Shared& shared, long long* bins,
                                          const T* grid, const T* queries, unsigned long n, unsigned long count,
                                          unsigned int chunk) {
    const unsigned long first = (it.block * chunks + chunk) * tileSize;
    copyDataToShm<loads, chunks>(block, it, shared.queryInShm, queries, count, chunk * tileSize);
    block.forEachThread([&](Thread thread) {
      const QuerySearch<T> search(grid, n);
      long long bin = 0;
      for (unsigned int k = 0; k < queriesPerThread; ++k) {
        const unsigned int position = static_cast<unsigned int>(thread.x) * queriesPerThread + k;
        if (position >= tileSize || first + position >= count) break;
        bin = search.find(shared.queryInShm[position], bin);
        shared.binIdxInShm[position] = bin;
      }
    });
    block.sync();
    copyDataToGlobalMem<loads, chunks>(block, it, bins, shared.binIdxInShm, count, chunk * tileSize);
  }
};

template <class T>
struct FindQueryInSingleDimColonGrid : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, long long* bins, const T* queries,
                                      unsigned long n) {
    if (it.isOutside()) return;
    bins[it.index] = findQueryBinIdxInColonGrid(queries[it.index], n);
  }
};

}  // namespace
}  // namespace interp

template <class T>
void IndexSearch::Invoker<T>::operator()(CUstream_st* stream, long long* bins, unsigned long offset, const T* grid,
                                         const T* queries, unsigned long gridSize, unsigned long queryCount) const {
  constexpr unsigned long perThread = interp::loads * interp::chunks;
  fixed1dblock::launchWithDeviceFunctor<interp::FindQueryInSingleDim<T>>(
      stream, gpucommon::hostDeviceMath::ceiledIntegerDivision(queryCount, perThread), interp::searchThreads,
      bins + offset, grid, queries, gridSize, queryCount);
}

template <class T>
void IndexSearch_ColonGrid::Invoker<T>::operator()(CUstream_st* stream, long long* bins, unsigned long offset,
                                                   const T* queries, unsigned long gridSize,
                                                   unsigned long queryCount) const {
  elementwise::launchWithDeviceFunctor<interp::FindQueryInSingleDimColonGrid<T>>(stream, queryCount, bins + offset,
                                                                                 queries, gridSize);
}

GPURUNTIME_INSTANTIATE(IndexSearch, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(IndexSearch_ColonGrid, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
