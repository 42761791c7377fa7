/// @file
/// The window of an output array that one block fills.
#pragma once

#include "checking.hpp"
#include "qualifiers.hpp"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace gpuruntime::platform {

inline constexpr unsigned long lineBytes = 64;

/// An array of at least this size is not found in a core's own caches by whoever reads it next.
inline constexpr unsigned long streamingBytes = 4UL << 20;

/// Writes multiples of 16 bytes past the caches; the destination is aligned to 16.
inline void streamAligned(void* destination, const void* source, unsigned long bytes) {
#if defined(__SSE2__)
  auto* to = static_cast<__m128i*>(destination);
  const auto* from = static_cast<const __m128i*>(source);
  for (unsigned long i = 0; i < bytes / 16; ++i) _mm_stream_si128(to + i, _mm_loadu_si128(from + i));
#else
  std::memcpy(destination, source, bytes);
#endif
}

/// Writes `bytes` bytes past the caches: a line that is written whole need not be read first, which more than doubles
/// the rate at which a large array is filled.
inline void streamBytes(void* destination, const void* source, unsigned long bytes) {
  auto* to = static_cast<char*>(destination);
  const auto* from = static_cast<const char*>(source);
  const unsigned long ahead = -reinterpret_cast<std::uintptr_t>(to) & 15;
  if (bytes < ahead + 16) {
    std::memcpy(to, from, bytes);
    return;
  }
  const unsigned long aligned = (bytes - ahead) / 16 * 16;
  std::memcpy(to, from, ahead);
  streamAligned(to + ahead, from + ahead, aligned);
  std::memcpy(to + ahead + aligned, from + ahead + aligned, bytes - ahead - aligned);
}

/// Makes what was written past the caches visible to other threads in the order that their synchronisation promises.
inline void finishStreaming() {
#if defined(__SSE2__)
  _mm_sfence();
#endif
}

/// Elements `[first, first + live)` of `out`, each to be written once, at its own index through `pointer()`.
///
/// An array that the caches would not keep anyway is written past them, by way of a buffer that stays in the first
/// level; a smaller one is written in place. N is the largest number of elements that a block fills, PER_THREAD of them
/// for each of its threads.
template <class T, unsigned int N = 256, unsigned int PER_THREAD = 1>
class OutputWindow {
 public:
  /// `count` is the size of the whole array.
  GPURUNTIME_INLINE OutputWindow(T* out, unsigned long first, unsigned long live, unsigned long count)
      : begin_(out + first), live_(live), streams_(count >= streamingBytes / sizeof(T)) {
    const std::uintptr_t origin = reinterpret_cast<std::uintptr_t>(buffer_) - first * sizeof(T);
    pointer_ = streams_ ? reinterpret_cast<T*>(origin) : out;
  }

  GPURUNTIME_INLINE T* pointer() { return pointer_; }

  template <class Block>
  GPURUNTIME_INLINE void flush(const Block& block) {
    const unsigned long most = block.shape().x * PER_THREAD;
    if (streams_) streamBytes(begin_, buffer_, (live_ < most ? live_ : most) * sizeof(T));
  }

 private:
  T* begin_;
  unsigned long live_;
  bool streams_;
  T* pointer_;
  alignas(64) unsigned char buffer_[N * sizeof(T)];
};

}  // namespace gpuruntime::platform
