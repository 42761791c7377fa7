/// @file
/// The greatest elements along one dimension of an array. Shapes, segments, strides and what is not checked are those
/// of sums (sum.hpp).
///
/// **Order of elements.** Real: by value, false before true; a NaN counts only where there is nothing else. Complex: by
/// magnitude, rounded and without overflow, then by the smaller part in magnitude where the larger ones are equal, then
/// by angle in [-pi, pi]; infinite magnitudes are told apart by those of the halved values; a NaN magnitude counts only
/// where there is nothing else, and (Inf, NaN) has an infinite one. So of (1, 1) and (1, -1) it is (1, 1).
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// The greatest element of each segment or column.
///
/// Real: -0 is smaller than +0, so that of both zeros the result is +0. Of NaNs alone the result is NaN. Complex
/// elements are combined in the order of sums, `a op b` being b where b is greater, else a: rounded magnitudes that
/// are nearly equal are not ordered transitively, and this order decides between them.
class Max {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Max, T, RealAndComplexFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long N, unsigned long L,
                                   unsigned long S) const;
  };
};

/// The greatest element of each segment or column, and the position of the first such element in it: from 1, as a
/// `double` rounded to nearest.
///
/// -0 and +0 are equal here, and so are NaNs: the first stands, with its bits. Complex elements are combined as above.
///
/// With K > 1, K neighbouring segments, or groups of columns, are chunks of one longer dimension, of L elements each:
/// positions in chunk c count from c * L + 1. K is at least 1, unchecked. Neither array of results may overlap the
/// input or the other.
class MaxWithIndex {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(MaxWithIndex, T, RealAndComplexFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* values, double* indices, const T* input, unsigned long N,
                                   unsigned long L, unsigned long K, unsigned long S) const;
  };
};

}  // namespace gpuruntime
