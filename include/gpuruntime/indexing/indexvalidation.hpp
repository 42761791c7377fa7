/// @file
/// Which numbers are indices.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `valid[i]` = 1 where `values[i]` is a finite integer of at least 1, and 0 elsewhere, NaN among it, 0 <= i < n.
///
/// n = 0 does nothing. The arrays must not overlap; that is not checked. Raises MessageError if the device can't be
/// asked for its limits.
class IndexValidation {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IndexValidation, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, bool* valid, const T* values) const;
  };
};

}  // namespace gpuruntime
