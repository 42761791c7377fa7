/// @file
/// Constant fills.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i] = value`, 0 <= i < n, whatever the name suggests: a fill with any value.
///
/// The bits of `value` are stored unchanged, those of a NaN too. n = 0 does nothing; nothing is checked.
/// Raises MessageError if the device can't be asked for its limits.
class GenericOnes {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(GenericOnes, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, T value) const;
  };
};

}  // namespace gpuruntime
