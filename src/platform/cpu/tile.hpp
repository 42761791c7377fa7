/// @file
/// Square tiles that are written by rows and read by columns.
#pragma once

#include "block.hpp"
#include "outputwindow.hpp"
#include "qualifiers.hpp"
#include "run.hpp"

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

/// Side of the largest squares of elements that are transposed in registers; of 16-byte elements four fill a line.
template <class T>
inline constexpr unsigned int cornerSide = sizeof(T) == 16                ? 4
                                           : vectorBytes / sizeof(T) < 16 ? vectorBytes / sizeof(T)
                                                                          : 16;

// Everything is spelled out at compile time, so that the rows stay in registers.
template <class T, std::size_t... I>
GPURUNTIME_INLINE void transposeCorner(const T* from, unsigned long fromPitch, T* to, unsigned long toPitch,
                                       std::index_sequence<I...>) {
  constexpr std::size_t size = sizeof...(I);
  using Vector = typename VectorOf<T, size>::type;
  Vector vectors[size];
  (std::memcpy(&vectors[I], from + I * fromPitch, sizeof(Vector)), ...);
  // log2(size) rounds, each of which interleaves row i with row i + size / 2, leave the transpose.
  constexpr std::make_index_sequence<size / 2> half{};
  interleaveHalves(vectors, half);
  if constexpr (size >= 4) interleaveHalves(vectors, half);
  if constexpr (size >= 8) interleaveHalves(vectors, half);
  if constexpr (size >= 16) interleaveHalves(vectors, half);
  static_assert(size <= 16, "four rounds");
  (std::memcpy(to + I * toPitch, &vectors[I], sizeof(Vector)), ...);
}

/// Writes the transpose of SIDE by SIDE elements.
template <unsigned int SIDE, class T>
GPURUNTIME_INLINE void transposeCorner(const T* from, unsigned long fromPitch, T* to, unsigned long toPitch) {
  if constexpr (sizeof(T) <= 8 && SIDE > 1) {
    transposeCorner(from, fromPitch, to, toPitch, std::make_index_sequence<SIDE>());
  } else {
    for (unsigned int row = 0; row < SIDE; ++row) {
      for (unsigned int column = 0; column < SIDE; ++column) {
        std::memcpy(to + row * toPitch + column, from + column * fromPitch + row, sizeof(T));
      }
    }
  }
}

}  // namespace detail

/// The columns of an N by N tile whose rows are PITCH elements apart: `(row, column)` is `tile[column][row]`.
template <class T, unsigned int N, unsigned int PITCH>
class TransposedTile {
 public:
  GPURUNTIME_INLINE explicit TransposedTile(const T (&tile)[N][PITCH]) {
    constexpr unsigned int corner = detail::cornerSide<T> < N ? detail::cornerSide<T> : N;
    for (unsigned int top = 0; top < N; top += corner) {
      for (unsigned int left = 0; left < N; left += corner) {
        detail::transposeCorner<corner>(&tile[top][left], PITCH, &rows_[left][top], rowPitch);
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

namespace detail {

/// storeTransposed, by corners that are transposed in vector registers and make rows of whole lines.
template <class T, unsigned int N, unsigned int PITCH>
GPURUNTIME_INLINE void storeCorners(const T (&tile)[N][PITCH], unsigned long endX, unsigned long endY, T* out,
                                    unsigned long pitch, unsigned long count) {
  constexpr unsigned int corner = cornerSide<T>;
  constexpr unsigned int perLine = lineBytes / sizeof(T);
  constexpr unsigned int chunk = perLine < corner ? corner : perLine;
  static_assert(N % chunk == 0, "a tile has rows of whole lines");
  const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(out) | (pitch * sizeof(T));
  const bool streams = address % lineBytes == 0 && count >= streamingBytes / sizeof(T);

  for (unsigned long y = 0; y < endY; y += corner) {
    const unsigned long rows = endY - y < corner ? endY - y : corner;
    for (unsigned long x = 0; x < endX; x += chunk) {
      const unsigned long columns = endX - x < chunk ? endX - x : chunk;
      const bool isWhole = rows == corner && columns == chunk;
      T* const to = out + y * pitch + x;
      alignas(lineBytes) T lines[corner][chunk];
      for (unsigned int column = 0; column < (isWhole ? chunk : columns); column += corner) {
        transposeCorner<corner>(&tile[x + column][y], PITCH, &lines[0][column], chunk);
      }
      if (!isWhole) {
        for (unsigned long i = 0; i < rows; ++i) copyInline(to + i * pitch, lines[i], columns * sizeof(T));
      } else if (streams) {
        for (unsigned int i = 0; i < corner; ++i) streamAligned(to + i * pitch, lines[i], sizeof lines[i]);
      } else {
        for (unsigned int i = 0; i < corner; ++i) std::memcpy(to + i * pitch, lines[i], sizeof lines[i]);
      }
    }
  }
}

}  // namespace detail

/// Fills a tile in shared storage: `tile[y][x]` is element x of row y of `in`, in rows `pitch` elements apart, for x
/// below `live.x` and y below `live.y`.
template <class Block, class T, unsigned int N, unsigned int PITCH>
GPURUNTIME_INLINE void loadTile(const Block& block, T (&tile)[N][PITCH], Live live, const T* in, unsigned long pitch) {
  if constexpr (checking::enabled) {
    block.forEachThread([&](Thread thread) {
      if (thread.x < live.x && thread.y < live.y) tile[thread.y][thread.x] = in[thread.y * pitch + thread.x];
    });
  } else {
    const unsigned long rows = live.y < N ? live.y : N;
    if (live.x >= N) {
      for (unsigned long y = 0; y < rows; ++y) std::memcpy(tile[y], in + y * pitch, N * sizeof(T));
    } else {
      for (unsigned long y = 0; y < rows; ++y) detail::copyInline(tile[y], in + y * pitch, live.x * sizeof(T));
    }
  }
}

/// Writes the transpose of a tile in shared storage to `out`, in rows `pitch` elements apart: element x of row y is
/// `tile[x][y]`, for x below `live.x` and y below `live.y`. `count` is the size of the whole output array.
template <class Block, class T, unsigned int N, unsigned int PITCH>
GPURUNTIME_INLINE void storeTransposed(const Block& block, const T (&tile)[N][PITCH], Live live, T* out,
                                       unsigned long pitch, unsigned long count) {
  if constexpr (checking::enabled) {
    block.forEachThread([&](Thread thread) {
      if (thread.x < live.x && thread.y < live.y) out[thread.y * pitch + thread.x] = tile[thread.x][thread.y];
    });
  } else {
    detail::storeCorners(tile, live.x < N ? live.x : N, live.y < N ? live.y : N, out, pitch, count);
  }
}

/// Asks for the tile of N by N elements at `corner`, whose rows are `pitch` elements apart, or for the part of it that
/// `live` leaves.
template <unsigned int N, class T>
GPURUNTIME_INLINE void prefetchTile(const T* corner, unsigned long pitch, Live live) {
  const unsigned long rows = live.y < N ? live.y : N, rowBytes = (live.x < N ? live.x : N) * sizeof(T);
  if (pitch * sizeof(T) <= lineBytes) return detail::prefetchBytes(corner, rows * pitch * sizeof(T));
  for (unsigned long row = 0; row < rows; ++row) detail::prefetchBytes(corner + row * pitch, rowBytes);
}

/// Elements from row to row of an N by N tile in shared storage: one cache line more than the tile has, so that the
/// lines of a column do not fall on one another in the first level.
template <class T, unsigned int N>
inline constexpr unsigned int tilePitch = N + lineBytes / sizeof(T);

/// Tiles of N by N elements along each side that a block had best move at once: rows of four cache lines. The checking
/// mode moves tiles one by one, as a GPU does.
template <class T, unsigned int N>
inline constexpr unsigned int joinedTiles =
    !checking::enabled && N * sizeof(T) < 4 * lineBytes ? 4 * lineBytes / (N * sizeof(T)) : 1;

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

template <class T, unsigned int N, std::size_t... I>
GPURUNTIME_INLINE void loadEightRuns(PerThread<T, N> (&values)[8], unsigned int lane, const T* in, unsigned long pitch,
                                     std::index_sequence<I...>) {
  using Vector = typename VectorOf<T, 8>::type;
  constexpr std::make_index_sequence<4> half{};
  Vector vectors[8];
  (std::memcpy(&vectors[I], in + (lane + I) * pitch, sizeof(Vector)), ...);
  interleaveHalves(vectors, half);
  interleaveHalves(vectors, half);
  interleaveHalves(vectors, half);
  (std::memcpy(values[I].slots() + lane, &vectors[I], sizeof(Vector)), ...);
}

}  // namespace detail

/// Each live thread t of a one-dimensional block loads its eight values from in[t * pitch] and behind.
template <class Block, class T, unsigned int N>
GPURUNTIME_INLINE void loadRuns(const Block&, Live live, PerThread<T, N> (&values)[8], const T* in,
                                unsigned long pitch) {
  const unsigned long threads = live.x < N ? live.x : N;
  unsigned int lane = 0;
  if constexpr (sizeof(T) <= 8) {
    for (; lane + 8 <= threads; lane += 8) {
      detail::loadEightRuns(values, lane, in, pitch, std::make_index_sequence<8>());
    }
  }
  for (; lane < threads; ++lane) {
    for (unsigned int i = 0; i < 8; ++i) values[i].slots()[lane] = in[lane * pitch + i];
  }
}

/// Each live thread t of a one-dimensional block stores its eight values at out[t * pitch] and behind, of an array of
/// `count` elements. Where they are whole cache lines, a large array is written past the caches.
template <class Block, class T, unsigned int N>
GPURUNTIME_INLINE void storeRuns(const Block&, Live live, const PerThread<T, N> (&values)[8], T* out,
                                 unsigned long pitch, unsigned long count) {
  const unsigned long threads = live.x < N ? live.x : N;
  [[maybe_unused]] const bool streams = 8 * sizeof(T) == lineBytes && pitch % 8 == 0 &&
                                        count >= streamingBytes / sizeof(T) &&
                                        reinterpret_cast<std::uintptr_t>(out) % lineBytes == 0;
  unsigned int lane = 0;
  if constexpr (sizeof(T) <= 8) {
    for (; lane + 8 <= threads; lane += 8) {
      detail::storeEightRuns(values, lane, out, pitch, streams, std::make_index_sequence<8>());
    }
  }
  for (; lane < threads; ++lane) {
    for (unsigned int i = 0; i < 8; ++i) out[lane * pitch + i] = values[i].slots()[lane];
  }
}

namespace detail {

/// Columns [first, ...) of a matrix of ROWS rows of n elements, as rows, by squares of SIDE as long as they fit;
/// returns the first column left.
template <unsigned int ROWS, unsigned int SIDE, class T>
GPURUNTIME_INLINE unsigned long transposeSquares(T* columns, const T* in, unsigned long n, unsigned long first) {
  if constexpr (SIDE <= cornerSide<T>) {
    for (; first + SIDE <= n; first += SIDE) {
      for (unsigned int row = 0; row < ROWS; row += SIDE) {
        transposeCorner<SIDE>(in + row * n + first, n, columns + first * ROWS + row, ROWS);
      }
    }
  }
  return first;
}

// Not inlined, and on bits, which move by memcpy: once for each width, however many kernels load their runs by it.
template <unsigned int ROWS, class T>
__attribute__((noinline)) void transposeRuns(T* columns, const T* in, unsigned long n) {
  unsigned long column = transposeSquares<ROWS, 16>(columns, in, n, 0);
  column = transposeSquares<ROWS, 8>(columns, in, n, column);
  column = transposeSquares<ROWS, 4>(columns, in, n, column);
  column = transposeSquares<ROWS, 2>(columns, in, n, column);
  transposeSquares<ROWS, 1>(columns, in, n, column);
}

template <>
struct BitsOf<16> {
  struct type {
    std::uint64_t words[2];
  };
};

}  // namespace detail

/// Loads RUNS runs of n elements that lie behind each other: element k of run t to `columns[k * RUNS + t]`.
template <unsigned int RUNS, class T>
GPURUNTIME_INLINE void loadRuns(T* columns, const T* in, unsigned long n) {
  using Bits = typename detail::BitsOf<sizeof(T)>::type;
  // Runs side by side are not read in the order of memory. So the runs behind them, likely the next, are asked for.
  detail::prefetchBytes(in + RUNS * n, RUNS * n * sizeof(T));
  detail::transposeRuns<RUNS>(reinterpret_cast<Bits*>(columns), reinterpret_cast<const Bits*>(in), n);
}

}  // namespace gpuruntime::platform
