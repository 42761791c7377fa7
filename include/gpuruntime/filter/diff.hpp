/// @file
/// Differences along one dimension of an array.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// First differences along a dimension of `Lo + 1` input rows: with S the product of the sizes in front of it, and
/// x(i, r, g), 0 <= i < S, the input's element at `i + r * S + g * S * (Lo + 1)`,
///
///     output[i + r * S + g * S * Lo] = x(i, r + 1, g) - x(i, r, g)      0 <= r < Lo
///
/// n is the number of output elements. Integers are clamped to the range of T, so that no difference of unsigned ones
/// is below 0; floating differences are rounded, those of complex elements by parts, and NaN spreads: Inf - Inf is NaN.
/// Higher differences are repeated calls.
///
/// n = 0 does nothing. S and Lo are at least 1, n is at most 2^32, and output and input don't overlap; this is not
/// checked. Raises MessageError if the device can't be asked for its limits.
class Diff {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Diff, T, DiffTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long S, unsigned long Lo,
                                   unsigned long n) const;
  };
};

}  // namespace gpuruntime
