/// @file
/// The bins of queries along one dimension. Bins, and what grids are, stand in interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

namespace gpuruntime {

/// `bins[offset + i]` = the bin of `queries[i]` in the grid, 0 <= i < queryCount.
///
/// For the families of compact queries, all dimensions' bins stand in one array: the stretch of a dimension of m
/// queries is m elements long, rounded up to a multiple of 16, and 16 for m = 0. The offset is where it begins.
///
/// Bins do not depend on the order of the queries, but are found sooner where neighbours are close, and where grid
/// points are evenly spaced. queryCount is below 2^32, unchecked. No query writes nothing. Raises MessageError if the
/// device can't be asked for its limits.
class IndexSearch {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IndexSearch, T, RealFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, long long* bins, unsigned long offset, const T* grid,
                                   const T* queries, unsigned long gridSize, unsigned long queryCount) const;
  };
};

/// The same in the colon grid 1, 2, ..., gridSize, which is rounded to T where a query is held against it.
class IndexSearch_ColonGrid {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IndexSearch_ColonGrid, T, RealFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, long long* bins, unsigned long offset, const T* queries,
                                   unsigned long gridSize, unsigned long queryCount) const;
  };
};

}  // namespace gpuruntime
