/// @file
/// Triangular parts of matrices.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// The elements of a matrix on and below its k-th diagonal, with zeros above: `output(x, y) = input(x, y)` where
/// x >= y - k, and 0 elsewhere, for row x of numRows and column y of numCols of two column-major matrices.
///
/// k > 0 is a diagonal above the main one, k < 0 one below it; beyond the matrix it gives a copy, or all zeros. x and
/// y - k are compared as signed 64-bit integers; that y - k does not overflow is not checked. Zero is (0, 0) for a
/// complex T.
///
/// Elements move as they are. What is not kept is not looked at: a NaN there becomes 0 too. `output == input` is
/// allowed; arrays that overlap otherwise are not, unchecked. A size of 0 does nothing. Raises MessageError if the
/// device can't be asked for its limits.
class TriLower {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(TriLower, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, long k, unsigned long numRows,
                                   unsigned long numCols) const;
  };
};

/// The elements below the k-th diagonal, ones on it, whatever the input holds there, and zeros above: x > y - k keeps,
/// x == y - k is 1. One is (1, 0) for a complex T and the byte 1 for bool.
///
/// Otherwise as TriLower.
class TriLowerOneOnDiag {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(TriLowerOneOnDiag, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, long k, unsigned long numRows,
                                   unsigned long numCols) const;
  };
};

/// The elements on and above the k-th diagonal, with zeros below: x <= y - k keeps.
///
/// Otherwise as TriLower.
class TriUpper {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(TriUpper, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, long k, unsigned long numRows,
                                   unsigned long numCols) const;
  };
};

}  // namespace gpuruntime
