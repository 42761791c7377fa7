/// @file
/// Whether a vector ascends.
///
/// The checks run on the default stream and look at all pairs of neighbours. Where the device fails they throw a
/// `std::runtime_error`, where memory for temporaries is missing `std::bad_alloc`.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// True if no element has to stand in front of the one before it. Equal neighbours pass. NaN counts as greater than all
/// numbers, so that it may follow anything, and only NaN may follow it. Complex values are in the order of
/// SortVector, but those with an infinite and a NaN part count as infinite, and all others with a NaN part as equal.
/// Vectors of one element, and of none, are sorted.
class IsSortedVector {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsSortedVector, T, RealAndComplexFloatTypes);
    GPURUNTIME_API bool operator()(const T* data, unsigned long n) const;
  };
};

/// True if each element is greater than the one before it. A NaN compares false, so a vector of two and more elements
/// with a NaN is not strongly sorted. Vectors of one element, and of none, are.
class IsStronglySortedVector {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsStronglySortedVector, T, RealFloatTypes);
    GPURUNTIME_API bool operator()(const T* data, unsigned long n) const;
  };
};

}  // namespace gpuruntime
