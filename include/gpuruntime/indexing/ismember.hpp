/// @file
/// Which elements of an array occur in another one, and where.
///
/// B is sorted, ascending, with NaNs behind all numbers, as SortVector leaves it:
///
///     SortVector(B, indexB, nB, true)                               indexB holds 1, 2, ... before
///     IsMember2Arg(stream, A, nA, B, nB, indexB, member, location)
///
/// Elements are compared in the type T of A, to which each value of B is converted: truncated towards zero to an
/// integer, rounded to nearest to `float`, true unless 0 to `bool`. A value outside the range of an integer T counts as
/// the nearest end of that range, so that an A which holds that end finds it; whoever does not want that leaves such
/// values out of B. -0 equals +0. NaN equals nothing, NaN included. For `bool`, B holds no negative numbers: as truth
/// values they would not be sorted.
///
/// nB = 0 makes every element a non-member, nA = 0 writes nothing. That B is sorted is not checked, nor that outputs
/// and inputs do not overlap, as they must not. Raises MessageError if the device can't be asked for its limits. Each
/// call is one launch; none waits, and none takes memory.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `member[i]` = 1 if some element of B equals `A[i]`, else 0, 0 <= i < nA. Runs on the default stream.
class IsMember1Arg {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsMember1Arg, T, MemberTypes);
    GPURUNTIME_API void operator()(const T* A, unsigned long nA, const double* B, unsigned long nB, bool* member) const;
  };
};

/// IsMember1Arg, and `location[i]` = `indexB[j]` with j the first position in B whose element equals `A[i]`, or 0.0 for
/// a non-member. As SortVector keeps the order of equal elements, that is the lowest place that they had before.
class IsMember2Arg {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsMember2Arg, T, MemberTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, const T* A, unsigned long nA, const double* B, unsigned long nB,
                                   const double* indexB, bool* member, double* location) const;
  };
};

}  // namespace gpuruntime
