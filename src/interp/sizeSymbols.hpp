/// @file
/// Sizes of up to five dimensions in constant memory, and what is said where they don't get there.
#pragma once

#include <cstddef>
#include <cstdio>

#include "platform/platform.hpp"

namespace gpuruntime::interp {

constexpr unsigned long maxDimensions = 5;
using SizesSymbol = unsigned long[maxDimensions];

/// Copies the first `count` sizes to a symbol, ahead of the kernel on its stream; true if that works.
inline bool copySizes(SizesSymbol& symbol, const unsigned long* sizes, unsigned long count, CUstream_st* stream) {
  return platform::cudaMemcpyToSymbolAsync(symbol, sizes, count * sizeof(unsigned long), 0, cudaMemcpyHostToDevice,
                                           stream) == cudaSuccess;
}

/// The same, with a line on standard output where it fails.
inline bool copySizesOrSay(SizesSymbol& symbol, const unsigned long* sizes, unsigned long count, CUstream_st* stream,
                           const char* failure) {
  if (copySizes(symbol, sizes, count, stream)) return true;
  std::puts(failure);
  std::fflush(stdout);
  return false;
}

/// The product of the sizes in front of a dimension, in 32 bits.
GPURUNTIME_HOST_DEVICE unsigned long getStride(const unsigned long* sizes, unsigned long dimension,
                                               unsigned long numDimensions) {
  unsigned int stride = 1;
  for (unsigned long k = 0; k < dimension && k < numDimensions; ++k) stride *= static_cast<unsigned int>(sizes[k]);
  return stride;
}

/// The coordinate along a dimension of the element at a column-major index of 32 bits.
GPURUNTIME_DEVICE unsigned int computeCoordFromLinIdx(unsigned int index, const unsigned long* sizes,
                                                      unsigned long dimension) {
  unsigned int coordinate = 0;
  for (unsigned long k = 0; k <= dimension; ++k) {
    const auto size = static_cast<unsigned int>(sizes[k]);
    coordinate = index % size;
    index /= size;
  }
  return coordinate;
}

}  // namespace gpuruntime::interp
