/// @file
/// Transposes.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `output[x * numY + y] = input[y * numX + x]`: the transpose of a column-major matrix of numX rows and numY columns.
///
/// Elements move as they are; the parts of a complex element stay together and keep their sign. `output == input` turns
/// the matrix in place, which is right where numX == numY, for vectors, and for matrices of at most 16 by 16. For other
/// shapes, and for arrays that overlap otherwise, the arrays must be distinct; that is not checked.
/// A size of 0 does nothing. Raises MessageError if the device can't be asked for its limits.
class Transpose {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Transpose, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long numX,
                                   unsigned long numY) const;
  };
};

/// Transpose, with the imaginary part of a complex element negated in its own class: two's complement without
/// saturation for integers (`char2` -128 stays -128, `uchar2` 5 becomes 251), a flipped sign for floating point, NaN
/// included.
///
/// Real elements are transposed. In place it is right where Transpose is, apart from one row of more than 16 columns,
/// whose elements from the 17th on would stay unconjugated.
class CTranspose {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CTranspose, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long numX,
                                   unsigned long numY) const;
  };
};

}  // namespace gpuruntime
