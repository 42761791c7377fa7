/// @file
/// The columns of a matrix times powers: the middle of a matrix power by eigenvalues.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `output(r, c) = V(r, c) * d[c]^s`, 0 <= r, c < n: V times the diagonal matrix of powered eigenvalues. V and the
/// output are n by n, by columns; d has n elements.
///
/// Real: integers and infinities take repeated squaring with rounded products, other values d^s within 1 unit in the
/// last place; a negative base with a fractional exponent makes its column NaN, which is the only report. x^0 is 1, of
/// NaN too. Complex: the complex power of the arithmetic layer, then the complex product V(r, c) * power.
///
/// The output may be V; other overlaps are not checked. n = 0 does nothing. Raises MessageError if the device can't be
/// asked for its limits.
class MPowerMatrixScalar {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(MPowerMatrixScalar, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* V, const T* d, T s, unsigned long n) const;
  };
};

/// `output(r, c) = V(r, c) * s^d[c]`, 0 <= r, c < n; as MPowerMatrixScalar with base and exponent exchanged.
class MPowerScalarMatrix {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(MPowerScalarMatrix, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* V, const T* d, T s, unsigned long n) const;
  };
};

}  // namespace gpuruntime
