/// @file
/// Diagonals out of matrices and into them.
///
/// Element i of diagonal k of a column-major matrix of numRows rows, 0 <= i < n, stands at
///
///     k >= 0, the k-th above the main one:    (i + k) * numRows + i
///     k <  0, the -k-th below the main one:   i * numRows + i - k
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `vector[i]` = element i of diagonal k of the matrix, 0 <= i < n.
///
/// Elements move as they are. n is the length of the diagonal; that it lies in the matrix, and that the arrays do not
/// overlap, is not checked. n = 0 does nothing. Raises MessageError if the device can't be asked for its limits.
class DiagMatToVec {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(DiagMatToVec, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* vector, const T* matrix, unsigned long numRows, long k,
                                   unsigned long n) const;
  };
};

/// Element i of diagonal k of the matrix = `vector[i]`, 0 <= i < n. Nothing but the diagonal is written: the caller has
/// zeroed the matrix.
///
/// Otherwise as DiagMatToVec.
class DiagVecToMat {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(DiagVecToMat, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* matrix, const T* vector, unsigned long numRows, long k,
                                   unsigned long n) const;
  };
};

}  // namespace gpuruntime
