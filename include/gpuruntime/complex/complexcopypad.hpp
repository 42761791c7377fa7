/// @file
/// Copies into a complex matrix of another size.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out(x, y) = in(x, y)` where the column-major input of inRows by inCols has that element, and (0, 0) elsewhere, over
/// an output of outRows by outCols.
///
/// A real element becomes (element, 0); a complex one is moved with all its bits. What lies beyond the output is not
/// read. The arrays must not overlap; that is not checked. outRows = 0 or outCols = 0 does nothing, and an empty input
/// leaves zeros. Raises MessageError if the device can't be asked for its limits.
class ComplexCopyPad {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ComplexCopyPad, T, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ComplexOf<T>* out, unsigned long outRows, unsigned long outCols,
                                   const T* in, unsigned long inRows, unsigned long inCols) const;
  };
};

}  // namespace gpuruntime
