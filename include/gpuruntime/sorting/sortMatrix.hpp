/// @file
/// Sorts of all columns of a matrix, in place.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Sorts each column of a matrix of n elements by itself, as SortVector sorts a vector: the same order, the same rules
/// for ties, NaNs and signed zeros, the same errors. `index`, if it is not null, holds n values that move with their
/// elements.
///
/// `keys[i]` is the number of the column that element i belongs to. They may be any numbers in any order: the columns
/// come out one after the other by ascending number, and so do the keys, which move too. Keys that ascend, as those of
/// columns one after the other in memory do, end as they began.
///
/// n = 0 does nothing.
class SortMatrix {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SortMatrix, T, SortTypes);
    GPURUNTIME_API void operator()(T* data, double* index, int* keys, unsigned long n, bool ascending) const;
  };
};

}  // namespace gpuruntime
