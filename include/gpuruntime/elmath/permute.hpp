/// @file
/// Permutations of the dimensions of an array.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Rearranges a column-major array so that dimension k of the output is dimension `order[k]` of the input, counted from
/// 1: the output's element at (i_0, i_1, ...) is the input's at the position whose coordinate along `order[k]` is i_k.
///
/// The sizes and the order lie in host memory and are read before the call returns. `order` is a permutation of 1 to
/// its length, which may exceed the number of input sizes: the input's sizes past the stored ones are 1. `outputSize`
/// is the permuted size, `outputSize[k] = inputSize[order[k] - 1]`. None of that is checked, nor that the arrays are
/// distinct, as they must be.
///
/// Elements move as they are; the parts of a complex element stay together. Sizes of 1 cost nothing. An array whose
/// sizes are all 1 is its one element, which is copied; one with a size of 0 has none, and nothing is done.
///
/// The plan of a call lies in constant memory of the device, where the next call puts its own: callers serialise calls
/// on different streams. If the plan can't be copied there, as for more than 64 sizes other than 1, the call ends
/// without a word and leaves the output as it was. Raises MessageError if the device can't be asked for its limits,
/// std::bad_alloc or std::length_error if there is no memory for the plan.
class Permute {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Permute, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, unsigned long numOutputSizes,
                                   unsigned long const* outputSize, const T* input, unsigned long numInputSizes,
                                   unsigned long const* inputSize, unsigned long orderLength,
                                   unsigned long const* order) const;
  };
};

}  // namespace gpuruntime
