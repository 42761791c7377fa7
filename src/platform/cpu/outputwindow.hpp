/// @file
/// The window of an output array that one block fills.
#pragma once

#include "qualifiers.hpp"
#include "streaming.hpp"

#include <cstdint>

namespace gpuruntime::platform {

/// Elements `[first, first + live)` of `out`, each to be written once, at its own index through `pointer()`.
///
/// An array that the caches would not keep anyway is written past them, by way of a buffer that stays in the first
/// level, and in whole lines where blocks follow one another; a smaller one is written in place. N is the largest
/// number of elements that a block fills, PER_THREAD of them for each of its threads.
template <class T, unsigned int N = 256, unsigned int PER_THREAD = 1>
class OutputWindow {
 public:
  /// `count` is the size of the whole array, or 0 for writing in place.
  GPURUNTIME_INLINE OutputWindow(T* out, unsigned long first, unsigned long live, unsigned long count)
      : begin_(out + first), live_(live), streams_(count >= streamingBytes / sizeof(T)) {
    const std::uintptr_t origin = reinterpret_cast<std::uintptr_t>(buffer_) - first * sizeof(T);
    pointer_ = streams_ ? reinterpret_cast<T*>(origin) : out;
  }

  GPURUNTIME_INLINE T* pointer() { return pointer_; }

  template <class Block>
  GPURUNTIME_INLINE void flush(const Block& block) {
    if (!streams_) return;
    const unsigned long most = block.threads() * PER_THREAD;
    block.joinedLines().append(begin_, buffer_, (live_ < most ? live_ : most) * sizeof(T));
  }

 private:
  T* begin_;
  unsigned long live_;
  bool streams_;
  T* pointer_;
  alignas(lineBytes) unsigned char buffer_[N * sizeof(T) + lineBytes];
};

}  // namespace gpuruntime::platform
