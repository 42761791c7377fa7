/// @file
/// Writing past the caches.
#pragma once

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

/// What the blocks of a run write past the caches one after the other. Where one begins at the byte at which the one
/// before it ended, the line that they share goes out whole; only lines shared with other runs are written in place.
class JoinedLines {
 public:
  /// Writes `bytes` bytes. The source can be read one line beyond them.
  GPURUNTIME_INLINE void append(void* destination, const void* source, unsigned long bytes) {
    auto* to = static_cast<char*>(destination);
    const auto* from = static_cast<const char*>(source);
    const unsigned long offset = reinterpret_cast<std::uintptr_t>(to) % lineBytes;
    if (to != end_) {
      finish();
      start_ = offset;
    }
    end_ = to + bytes;
    if (offset != 0) {
      std::memcpy(line_ + offset, from, lineBytes);
      if (offset + bytes < lineBytes) return;
      if (start_ == 0) {
        streamAligned(to - offset, line_, lineBytes);
      } else {
        std::memcpy(to - offset + start_, line_ + start_, lineBytes - start_);
        start_ = 0;
      }
      to += lineBytes - offset;
      from += lineBytes - offset;
      bytes -= lineBytes - offset;
    }
    const unsigned long whole = bytes / lineBytes * lineBytes;
    streamAligned(to, from, whole);
    std::memcpy(line_, from + whole, lineBytes);
  }

  /// Writes what is left of the last line.
  void finish() {
    const unsigned long filled = reinterpret_cast<std::uintptr_t>(end_) % lineBytes;
    if (filled > start_) std::memcpy(end_ - (filled - start_), line_ + start_, filled - start_);
    end_ = nullptr;
    start_ = 0;
  }

 private:
  char* end_ = nullptr;
  unsigned long start_ = 0;  // First byte of the line that is this run's own.
  alignas(lineBytes) char line_[2 * lineBytes];
};

}  // namespace gpuruntime::platform
