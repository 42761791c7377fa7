/// @file
/// The error word of the unit that includes this: set before a launch, read after it. Internal linkage, as the word
/// has.
#pragma once

#include "gpucommon/ptxmathunsafe.hpp"

namespace gpuruntime {

/// Sets the word to "no error" on the stream; false if that fails.
[[maybe_unused]] static bool armErrorWord(CUstream_st* stream) {
  const unsigned int armed = gpucommon::PtxError::NoError;
  return platform::cudaMemcpyToSymbolAsync(__QRD_PTX_ERROR_CODE, &armed, sizeof armed, 0, cudaMemcpyHostToDevice,
                                           stream) == cudaSuccess;
}

/// Waits for the stream and returns the word, or 1037.
[[maybe_unused]] static unsigned int readErrorWord(CUstream_st* stream) {
  unsigned int word;
  const bool copied = platform::cudaMemcpyFromSymbolAsync(&word, __QRD_PTX_ERROR_CODE, sizeof word, 0,
                                                          cudaMemcpyDeviceToHost, stream) == cudaSuccess;
  const bool isRead = copied && platform::cudaStreamSynchronize(stream) == cudaSuccess;
  return isRead ? word : gpucommon::PtxError::WordNotReadable;
}

/// Raises "subscript out of range" in the word.
[[maybe_unused]] static GPURUNTIME_DEVICE void raiseOutOfRange() {
  gpucommon::scalarmath::errorbody<double, gpucommon::PtxError::SubscriptOutOfRange>();
}

}  // namespace gpuruntime
