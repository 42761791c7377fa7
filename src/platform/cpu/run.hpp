/// @file
/// Runs of elements that a block copies as they are.
#pragma once

#include "block.hpp"
#include "outputwindow.hpp"
#include "qualifiers.hpp"

#include <cstdint>
#include <cstring>

namespace gpuruntime::platform {
namespace detail {

// Words side by side, of which the last may overlap the one before.
template <unsigned long WORD>
GPURUNTIME_INLINE void copyWords(char* to, const char* from, unsigned long bytes) {
  for (unsigned long at = 0; at + WORD < bytes; at += WORD) std::memcpy(to + at, from + at, WORD);
  std::memcpy(to + bytes - WORD, from + bytes - WORD, WORD);
}

/// Copies some cache lines at most, without the call that memcpy is for a size unknown to the compiler.
GPURUNTIME_INLINE void copyInline(void* destination, const void* source, unsigned long bytes) {
  auto* to = static_cast<char*>(destination);
  const auto* from = static_cast<const char*>(source);
  if (bytes >= 16) {
    copyWords<16>(to, from, bytes);
  } else if (bytes >= 8) {
    copyWords<8>(to, from, bytes);
  } else if (bytes >= 4) {
    copyWords<4>(to, from, bytes);
  } else if (bytes >= 2) {
    copyWords<2>(to, from, bytes);
  } else if (bytes == 1) {
    *to = *from;
  }
}

/// Asks for bytes, to be kept in the second level: in the first, runs that lie far apart may fall on one another.
GPURUNTIME_INLINE void prefetchBytes(const void* first, unsigned long bytes) {
  const auto begin = reinterpret_cast<std::uintptr_t>(first);
  for (std::uintptr_t line = begin / lineBytes * lineBytes; line < begin + bytes; line += lineBytes) {
    __builtin_prefetch(reinterpret_cast<const void*>(line), 0, 2);
  }
}

}  // namespace detail

/// Copies `live` elements, one a thread; where joinedRuns is above 1, up to that many times the threads of the block.
/// `count` is the size of the whole output array.
template <class Block, class T>
GPURUNTIME_INLINE void copyRun(const Block& block, T* out, const T* in, unsigned long live, unsigned long count) {
  if constexpr (checking::enabled) {
    for (unsigned long first = 0; first < live; first += block.shape().x) {
      block.forEachThread([&](Thread thread) {
        if (first + thread.x < live) out[first + thread.x] = in[first + thread.x];
      });
    }
    return;
  }
  const unsigned long bytes = live * sizeof(T);
  const unsigned long ahead = -reinterpret_cast<std::uintptr_t>(out) % lineBytes;
  const bool isWholeLines = (ahead | bytes % lineBytes) == 0;
  if (count < streamingBytes / sizeof(T) || (!isWholeLines && bytes < 4 * lineBytes)) {
    return detail::copyInline(out, in, bytes);
  }
  // Lines at the ends are shared with other runs, and are written in place.
  const unsigned long behind = (bytes - ahead) % lineBytes;
  auto* to = reinterpret_cast<char*>(out);
  const auto* from = reinterpret_cast<const char*>(in);
  detail::copyInline(to, from, ahead);
  streamAligned(to + ahead, from + ahead, bytes - ahead - behind);
  detail::copyInline(to + bytes - behind, from + bytes - behind, behind);
}

/// Asks for the run of `live` elements that a walk in steps of `step` elements reaches when memory has had time to
/// answer. It may lie outside the array.
template <class T>
GPURUNTIME_INLINE void prefetchRunAhead(const T* run, unsigned long step, unsigned long live) {
  constexpr unsigned long bytesAhead = 2048;
  const unsigned long stepsAhead = 1 + bytesAhead / (live * sizeof(T));
  const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(run) + stepsAhead * step * sizeof(T);
  detail::prefetchBytes(reinterpret_cast<const void*>(ahead), live * sizeof(T));
}

/// Runs of neighbouring blocks, or of the steps of a block, that are best copied at once: 8 KiB for blocks of 256. The
/// checking mode copies runs one by one, as a GPU does.
template <class T>
inline constexpr unsigned int joinedRuns = checking::enabled ? 1 : 32 / sizeof(T);

}  // namespace gpuruntime::platform
