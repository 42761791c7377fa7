/// @file
/// Square tiles that are written by rows and read by columns.
#pragma once

#include "block.hpp"
#include "outputwindow.hpp"
#include "qualifiers.hpp"

#include <cstdint>
#include <cstring>
#include <utility>

namespace gpuruntime::platform {
namespace detail {

template <unsigned int BYTES>
struct BitsOf;
template <>
struct BitsOf<1> {
  using type = std::uint8_t;
};
template <>
struct BitsOf<2> {
  using type = std::uint16_t;
};
template <>
struct BitsOf<4> {
  using type = std::uint32_t;
};
template <>
struct BitsOf<8> {
  using type = std::uint64_t;
};

/// M elements side by side, as their bits: one machine vector.
template <class T, unsigned int M>
struct VectorOf {
  typedef typename BitsOf<sizeof(T)>::type type __attribute__((vector_size(M * sizeof(T))));
};

// a[0] b[0] a[1] b[1] ... from the first (HALF = 0) or the second (HALF = 1) halves of two vectors.
template <unsigned int HALF, class Vector, int... I>
GPURUNTIME_INLINE Vector interleave(Vector a, Vector b, std::integer_sequence<int, I...>) {
  constexpr int size = sizeof...(I);
  return __builtin_shufflevector(a, b, (static_cast<int>(HALF) * size / 2 + I / 2 + I % 2 * size)...);
}

template <class Vector, std::size_t M, std::size_t... I>
GPURUNTIME_INLINE void interleaveHalves(Vector (&rows)[M], std::index_sequence<I...>) {
  constexpr auto lanes = std::make_integer_sequence<int, static_cast<int>(M)>();
  Vector next[M];
  ((next[2 * I] = interleave<0>(rows[I], rows[I + M / 2], lanes),
    next[2 * I + 1] = interleave<1>(rows[I], rows[I + M / 2], lanes)),
   ...);
  ((rows[2 * I] = next[2 * I], rows[2 * I + 1] = next[2 * I + 1]), ...);
}

// Everything is spelled out at compile time, so that the rows stay in registers.
template <class T, unsigned int N, unsigned int PITCH, unsigned int ROW_PITCH, std::size_t... I>
GPURUNTIME_INLINE void transposeCorner(const T (&tile)[N][PITCH], T (&rows)[N][ROW_PITCH], unsigned int top,
                                       unsigned int left, std::index_sequence<I...>) {
  constexpr std::size_t size = sizeof...(I);
  using Vector = typename VectorOf<T, size>::type;
  Vector vectors[size];
  (std::memcpy(&vectors[I], &tile[top + I][left], sizeof(Vector)), ...);
  // log2(size) rounds, each of which interleaves row i with row i + size / 2, leave the transpose.
  constexpr std::make_index_sequence<size / 2> half{};
  interleaveHalves(vectors, half);
  if constexpr (size >= 4) interleaveHalves(vectors, half);
  if constexpr (size >= 8) interleaveHalves(vectors, half);
  if constexpr (size >= 16) interleaveHalves(vectors, half);
  static_assert(size <= 16, "four rounds");
  (std::memcpy(&rows[left + I][top], &vectors[I], sizeof(Vector)), ...);
}

}  // namespace detail

/// The columns of an N by N tile whose rows are PITCH elements apart: `(row, column)` is `tile[column][row]`.
template <class T, unsigned int N, unsigned int PITCH>
class TransposedTile {
 public:
  GPURUNTIME_INLINE explicit TransposedTile(const T (&tile)[N][PITCH]) {
    constexpr unsigned int fitting = detail::vectorBytes / sizeof(T);
    constexpr unsigned int corner = fitting < N ? fitting : N;
    if constexpr (sizeof(T) <= 8 && corner > 1) {
      for (unsigned int top = 0; top < N; top += corner) {
        for (unsigned int left = 0; left < N; left += corner) {
          detail::transposeCorner(tile, rows_, top, left, std::make_index_sequence<corner>());
        }
      }
    } else {
      for (unsigned int row = 0; row < N; ++row) {
        for (unsigned int column = 0; column < N; ++column) rows_[row][column] = tile[column][row];
      }
    }
  }

  GPURUNTIME_INLINE const T& operator()(unsigned long row, unsigned long column) const { return rows_[row][column]; }

 private:
  // Narrow rows lie apart: merged, loads of several rows at once would wait for their stores.
  static constexpr unsigned int rowPitch = N * sizeof(T) < lineBytes ? N + 16 / sizeof(T) : N;

  alignas(lineBytes) T rows_[N][rowPitch];
};

/// The part of an output array that a block fills as N rows of N elements, `pitch` elements apart: write each element
/// once, through `at(thread)`, then `flush(block)`.
template <class T, unsigned int N>
class OutputTile {
 public:
  /// `corner` is the index in `out` of the tile's first element, negative where the tile begins before the array.
  /// `isWhole` says that all N by N elements are written, and `count` is the size of the whole array.
  GPURUNTIME_INLINE OutputTile(T* out, long corner, unsigned long pitch, bool isWhole, unsigned long count)
      : out_(out), corner_(corner), pitch_(static_cast<long>(pitch)) {
    // Past the caches go whole cache lines only: half of one would have to be read to be written.
    const std::uintptr_t address =
        reinterpret_cast<std::uintptr_t>(out) + static_cast<unsigned long>(corner) * sizeof(T);
    const bool wholeLines = N * sizeof(T) % lineBytes == 0 && (address | (pitch * sizeof(T))) % lineBytes == 0;
    streams_ = wholeLines && isWhole && count >= streamingBytes / sizeof(T);
    target_ = streams_ ? buffer_[0] : out;
    targetCorner_ = streams_ ? 0 : corner_;
    targetPitch_ = streams_ ? long{N} : pitch_;
  }

  GPURUNTIME_INLINE T& at(const Thread& thread) {
    return target_[targetCorner_ + static_cast<long>(thread.y) * targetPitch_ + static_cast<long>(thread.x)];
  }

  template <class Block>
  GPURUNTIME_INLINE void flush(const Block&) {
    if (!streams_) return;
    for (long row = 0; row < long{N}; ++row) {
      streamBytes(out_ + (corner_ + row * pitch_), buffer_[row], sizeof buffer_[row]);
    }
  }

 private:
  T* out_;
  long corner_;
  long pitch_;
  bool streams_;
  T* target_;
  long targetCorner_;
  long targetPitch_;
  alignas(lineBytes) T buffer_[N][N];
};

/// Asks for the tile that follows the one of N by N elements at `corner` along its rows, which are `pitch` elements
/// apart: too far for the hardware to see the pattern.
template <unsigned int N, class T>
GPURUNTIME_INLINE void prefetchNextTile(const T* corner, unsigned long pitch) {
  constexpr unsigned long rowBytes = N * sizeof(T);
  constexpr unsigned long distance = rowBytes > lineBytes ? rowBytes : lineBytes;
  for (unsigned int row = 0; row < N; ++row) {
    const auto* next = reinterpret_cast<const char*>(corner + row * pitch) + distance;
    for (unsigned long byte = 0; byte < rowBytes; byte += lineBytes) __builtin_prefetch(next + byte);
  }
}

/// Asks for the output tile at index `corner` of `out`, if its rows fill parts of cache lines, which are read to be
/// written. The tile may lie outside the array.
template <unsigned int N, class T>
GPURUNTIME_INLINE void prefetchOutputTile(const T* out, long corner, unsigned long pitch) {
  if (N * sizeof(T) >= lineBytes) return;
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(out) + static_cast<unsigned long>(corner) * sizeof(T);
  for (unsigned int row = 0; row < N; ++row) {
    __builtin_prefetch(reinterpret_cast<const void*>(first + row * pitch * sizeof(T)), 1);
  }
}

/// Side of the squares of blocks that fill whole cache lines in both dimensions, for tiles of N by N elements.
template <class T, unsigned int N>
inline constexpr unsigned int blocksPerLine = N * sizeof(T) < lineBytes ? lineBytes / (N * sizeof(T)) : 1;

namespace detail {

template <class T, unsigned int N, std::size_t... I>
GPURUNTIME_INLINE void storeEightRuns(const PerThread<T, N> (&values)[8], unsigned int lane, T* out,
                                      unsigned long pitch, bool streams, std::index_sequence<I...>) {
  using Vector = typename VectorOf<T, 8>::type;
  constexpr std::make_index_sequence<4> half{};
  Vector vectors[8];
  (std::memcpy(&vectors[I], values[I].slots() + lane, sizeof(Vector)), ...);
  interleaveHalves(vectors, half);
  interleaveHalves(vectors, half);
  interleaveHalves(vectors, half);
  if (streams) {
    (streamBytes(out + (lane + I) * pitch, &vectors[I], sizeof(Vector)), ...);
  } else {
    (std::memcpy(out + (lane + I) * pitch, &vectors[I], sizeof(Vector)), ...);
  }
}

}  // namespace detail

/// Each live thread t of a one-dimensional block stores its eight values at out[t * pitch] and behind, of an array of
/// `count` elements. Where they are whole cache lines, a large array is written past the caches.
template <class Block, class T, unsigned int N>
GPURUNTIME_INLINE void storeRuns(const Block&, Live live, const PerThread<T, N> (&values)[8], T* out,
                                 unsigned long pitch, unsigned long count) {
  const unsigned long threads = live.x < N ? live.x : N;
  const bool streams = 8 * sizeof(T) == lineBytes && pitch % 8 == 0 && count >= streamingBytes / sizeof(T) &&
                       reinterpret_cast<std::uintptr_t>(out) % lineBytes == 0;
  unsigned int lane = 0;
  for (; lane + 8 <= threads; lane += 8) {
    detail::storeEightRuns(values, lane, out, pitch, streams, std::make_index_sequence<8>());
  }
  for (; lane < threads; ++lane) {
    for (unsigned int i = 0; i < 8; ++i) out[lane * pitch + i] = values[i].slots()[lane];
  }
}

}  // namespace gpuruntime::platform
