/// @file
/// Quarter turns.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Turns each page of a stack of column-major matrices by 90 degrees.
///
/// With A(x, y) the element of row x and column y of an input page of numX rows and numY columns, and B the output page
/// of numY rows and numX columns:
///
///     clockwise:           B(y, numX - 1 - x) = A(x, y)
///     counter-clockwise:   B(numY - 1 - y, x) = A(x, y)
///
/// so that [1 2; 3 4] becomes [3 1; 4 2] clockwise and [2 4; 1 3] counter-clockwise. Elements move as they are and
/// pages keep their order. The arrays must not overlap; that is not checked. numX = 0 or numY = 0 does nothing, and
/// numPages = 0 writes nothing. Raises MessageError if the device can't be asked for its limits.
class Rot90 {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Rot90, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long numX,
                                   unsigned long numY, unsigned long numPages, bool clockwise) const;
  };
};

}  // namespace gpuruntime
