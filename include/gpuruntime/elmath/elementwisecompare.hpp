/// @file
/// Equality of two arrays, element by element.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `result[i] = a[i] == b[i]`, 0 <= i < n, with 0 equal to -0. NaN equals nothing, or, with `nanEqual`, every NaN.
///
/// | pair | compared |
/// |---|---|
/// | the same integer type; `bool` with `bool` | bit by bit |
/// | the same floating type | in that type |
/// | `long long` with `unsigned long long` | exactly |
/// | any other pair of real types | both rounded to double; any byte but 0 of a `bool` is 1 |
/// | complex with complex | by parts, each as the table says; both must be equal |
/// | real with complex | the real parts as the table says, and the imaginary part must equal 0 |
///
/// So a 64-bit integer above 2^53 equals every other type's value of the double that it rounds to. With `nanEqual`,
/// (NaN, 1) equals (NaN, 1) but not (1, NaN); a NaN imaginary part never equals a real element.
///
/// `result` must not overlap the inputs; that is not checked. n = 0 does nothing. Raises MessageError if the device
/// can't be asked for its limits.
class ElementwiseCompare {
 public:
  template <class T1, class T2>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(ElementwiseCompare, T1, AllTypes);
    GPURUNTIME_FAMILY_TAKES(ElementwiseCompare, T2, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, bool* result, const T1* a, const T2* b,
                                   bool nanEqual) const;
  };
};

}  // namespace gpuruntime
