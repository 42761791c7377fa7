/// @file
/// A block and its threads: a step is a SIMD loop over all threads, and a barrier is the end of that loop.
#pragma once

#include "../extent.hpp"
#include "checking.hpp"
#include "executor.hpp"
#include "listing.hpp"
#include "qualifiers.hpp"
#include "streaming.hpp"

#include <cstring>

namespace gpuruntime::platform {

// 64 bits: a 32-bit unsigned index may wrap, so the compiler could not see that neighbours touch neighbouring
// addresses.
using ThreadIndex = unsigned long;

// Idle threads are left out, apart from the checking mode, where the bound tests are part of what is checked.
GPURUNTIME_INLINE bool isIdle(bool beyondLive) {
  return checking::enabled && beyondLive;
}

struct Thread {
  ThreadIndex x;
  ThreadIndex y;
  ThreadIndex z;
  ThreadIndex lane;
};

/// A 64-bit word of each thread of a pack; see pack.hpp.
typedef unsigned long LongWords __attribute__((vector_size(detail::vectorBytes)));

/// Neighbouring threads, one for each 64-bit lane of a machine vector.
struct Pack {
  static constexpr unsigned int size = detail::vectorBytes / 8;

  ThreadIndex first;

  /// The threads' indices.
  GPURUNTIME_INLINE LongWords threads() const {
    LongWords words = {};
    for (unsigned int lane = 0; lane < size; ++lane) words[lane] = first + lane;
    return words;
  }
};

namespace detail {
/// The same value, of which the compiler knows nothing: a loop that it stands in stays one of single elements.
GPURUNTIME_INLINE unsigned long singly(unsigned long value) {
  asm("" : "+r"(value));
  return value;
}
}  // namespace detail

/// One block of a launch. X and Y are its shape where the compiler is to know it; X = 0 leaves it to run time.
template <unsigned int X = 0, unsigned int Y = 1>
class Block {
 public:
  static constexpr unsigned int size = X * Y;  ///< Threads, where the shape is known.

  Block(Extent index, Extent grid, Extent shape, JoinedLines* joinedLines = nullptr)
      : index_(index), grid_(grid), shape_(shape), joinedLines_(joinedLines) {}

  Extent index() const { return index_; }
  Extent grid() const { return grid_; }
  Extent shape() const { return X == 0 ? shape_ : Extent{X, Y, 1}; }
  unsigned long threads() const { return 1UL * shape().x * shape().y * shape().z; }

  /// What the blocks that run one after the other have in common.
  JoinedLines& joinedLines() const { return *joinedLines_; }

  template <unsigned int FixedX, unsigned int FixedY = 1>
  Block<FixedX, FixedY> withShape() const {
    return {index_, grid_, FixedX == 0 ? shape_ : Extent{FixedX, FixedY, 1}, joinedLines_};
  }

  template <class Step>
  GPURUNTIME_INLINE void forEachThread(Step step) const {
    forEachThread(Live{}, step);
  }

  template <class Step>
  GPURUNTIME_INLINE void forEachThread(Live live, Step step) const {
    const ThreadIndex sizeX = shape().x, sizeY = shape().y, sizeZ = shape().z;
    if constexpr (checking::enabled) {
      const unsigned int* order = checking::threadOrder(sizeX * sizeY * sizeZ);
      for (ThreadIndex i = 0; i < sizeX * sizeY * sizeZ; ++i) {
        const ThreadIndex lane = order[i];
        step(Thread{lane % sizeX, lane / sizeX % sizeY, lane / (sizeX * sizeY), lane});
      }
    } else {
      const ThreadIndex endX = live.x < sizeX ? live.x : sizeX;
      const ThreadIndex endY = live.y < sizeY ? live.y : sizeY;
      const ThreadIndex endZ = live.z < sizeZ ? live.z : sizeZ;
      if (X != 0 && endX == X && endY == Y) {
        runThreads(X, Y, 1, step);  // Most blocks are whole: loops of known length.
      } else {
        runThreads(endX, endY, endZ, step);
      }
    }
  }

  /// forEachThread for blocks whose extent along x may be short: then the longest other loop stands inside.
  template <class Step>
  GPURUNTIME_INLINE void forEachThreadOfBox(Live live, Step step) const {
    const ThreadIndex sizeX = shape().x, sizeY = shape().y, sizeZ = shape().z;
    const ThreadIndex endX = live.x < sizeX ? live.x : sizeX;
    const ThreadIndex endY = live.y < sizeY ? live.y : sizeY;
    const ThreadIndex endZ = live.z < sizeZ ? live.z : sizeZ;
    if (checking::enabled || endX >= longEnough) {
      forEachThread(live, step);
    } else if (endZ <= 1 || endY >= endZ) {
      for (ThreadIndex z = 0; z < endZ; ++z) {
        for (ThreadIndex x = 0; x < endX; ++x) {
          GPURUNTIME_UNROLL
          for (ThreadIndex y = 0; y < endY; ++y) step(Thread{x, y, z, (z * sizeY + y) * sizeX + x});
        }
      }
    } else {
      for (ThreadIndex y = 0; y < endY; ++y) {
        for (ThreadIndex x = 0; x < endX; ++x) {
          GPURUNTIME_UNROLL
          for (ThreadIndex z = 0; z < endZ; ++z) step(Thread{x, y, z, (z * sizeY + y) * sizeX + x});
        }
      }
    }
  }

  /// forEachThreadOfBox for steps that read or write where `placeOf(thread)` says. Vectors find the places; they would
  /// gather and scatter slower than single loads and stores do.
  template <class PlaceOf, class Step>
  GPURUNTIME_INLINE void forEachPlace(Live live, PlaceOf placeOf, Step step) const {
    const ThreadIndex sizeX = shape().x, sizeY = shape().y, sizeZ = shape().z;
    const ThreadIndex endX = live.x < sizeX ? live.x : sizeX;
    const ThreadIndex endY = live.y < sizeY ? live.y : sizeY;
    const ThreadIndex endZ = live.z < sizeZ ? live.z : sizeZ;
    if (checking::enabled || endX < longEnough) {
      forEachThreadOfBox(live, [&](Thread thread) { step(thread, placeOf(thread)); });
      return;
    }
    unsigned long places[placesAtOnce];
    for (ThreadIndex z = 0; z < endZ; ++z) {
      for (ThreadIndex y = 0; y < endY; ++y) {
        const ThreadIndex lane = (z * sizeY + y) * sizeX;
        for (ThreadIndex first = 0; first < endX; first += placesAtOnce) {
          const ThreadIndex count = endX - first < placesAtOnce ? endX - first : placesAtOnce;
          GPURUNTIME_SIMD
          for (ThreadIndex x = 0; x < count; ++x) places[x] = placeOf(Thread{first + x, y, z, lane + first + x});
          GPURUNTIME_UNROLL
          for (ThreadIndex x = 0; x < count; ++x) {
            step(Thread{first + x, y, z, lane + first + x}, detail::singly(places[x]));
          }
        }
      }
    }
  }

  /// Runs `step(Pack)` for packs of threads of a one-dimensional block of whole packs.
  template <class Step>
  GPURUNTIME_INLINE void forEachPack(Live live, Step step) const {
    const ThreadIndex sizeX = shape().x, packs = sizeX / Pack::size;
    if constexpr (checking::enabled) {
      const unsigned int* order = checking::threadOrder(packs);
      for (ThreadIndex i = 0; i < packs; ++i) step(Pack{order[i] * Pack::size});
    } else {
      const ThreadIndex end = live.x < sizeX ? live.x : sizeX;
      for (ThreadIndex first = 0; first < end; first += Pack::size) step(Pack{first});
    }
  }

  /// Runs `step(Thread, element, row)` for the element that a thread of a one-dimensional block has in each of `rows`
  /// rows, in order: `in[row * pitch + thread.x]`.
  template <class T, class Step>
  GPURUNTIME_INLINE void forEachRow(Live live, const T* in, unsigned long pitch, unsigned long rows, Step step) const {
    if constexpr (checking::enabled) {
      for (unsigned long row = 0; row < rows; ++row) {
        forEachThread(live, [&](Thread thread) {
          if (thread.x < live.x) step(thread, in[row * pitch + thread.x], row);
        });
      }
    } else {
      const ThreadIndex threads = live.x < shape().x ? live.x : shape().x;
      const auto run = [&](ThreadRange range, RowRange part) { runRows(range, in, pitch, part, step); };
      shareRows(blocks(), threads, sizeof(T), {0, rows}, run);
    }
  }

  /// Runs `step(thread, column, k, e)` for elements e = column * RUN + k below `live`, RUN for each thread along x:
  /// here those of its own column.
  template <unsigned int RUN, class Step>
  GPURUNTIME_INLINE void forEachOfRuns(unsigned long live, Step step) const {
    const ThreadIndex whole = live / RUN;
    forEachThread(Live{whole}, [&](Thread thread) {
      if (isIdle(thread.x >= whole)) return;
      unrolled<RUN>([&](auto k) { step(thread, thread.x, k, thread.x * RUN + k); });
    });
    if (whole >= shape().x || live % RUN == 0) return;
    forEachThread(Live{whole + 1}, [&](Thread thread) {
      if (thread.x != whole) return;
      for (ThreadIndex k = 0; k < live % RUN; ++k) step(thread, whole, k, whole * RUN + k);
    });
  }

  /// True if the test holds for some thread.
  template <class Test>
  GPURUNTIME_INLINE bool findsAny(Live live, Test test) const {
    unsigned char found = 0;
    forEachThread(live, [&](Thread thread) { found |= static_cast<unsigned char>(test(thread)); });
    return found != 0;
  }

  /// Runs `write(thread, slot)` for the threads for which `lists(thread)` holds. Of threads that follow one another
  /// along x the slots do so, too, so that `slotOf` is asked for the first alone.
  template <class Lists, class SlotOf, class Write>
  GPURUNTIME_INLINE void forEachListed(Live live, Lists lists, SlotOf slotOf, Write write) const {
    if constexpr (checking::enabled) {
      forEachThread(live, [&](Thread thread) {
        if (lists(thread)) write(thread, slotOf(thread));
      });
    } else {
      const ThreadIndex sizeX = shape().x, sizeY = shape().y;
      const ThreadIndex endX = live.x < sizeX ? live.x : sizeX, endY = live.y < sizeY ? live.y : sizeY;
      for (ThreadIndex y = 0; y < endY; ++y) {
        for (ThreadIndex first = 0; first < endX; first += listedAtOnce) {
          const ThreadIndex threads = endX - first < listedAtOnce ? endX - first : listedAtOnce;
          const auto threadAt = [=](ThreadIndex i) { return Thread{first + i, y, 0, y * sizeX + first + i}; };
          writeListed(threads, threadAt, lists, slotOf, write);
        }
      }
    }
  }

  void sync() const {}

  unsigned long blocks() const { return static_cast<unsigned long>(grid_.x) * grid_.y * grid_.z; }

 private:
  // Several rows in one loop over the threads keep what a thread carries along in a register. But memory is read
  // fastest in its own order, so rows that follow one another without a gap are taken one by one, unless they are
  // short.
  // clang, told that turns of a loop do not depend on each other, mixes up the updates that one turn makes of a pair.
#if defined(__clang__)
  static constexpr unsigned int rowsAtOnce = 1;
#else
  static constexpr unsigned int rowsAtOnce = 8;
#endif
  static constexpr unsigned long shortRowBytes = 128;

  template <class T, class Step>
  static GPURUNTIME_INLINE void runRows(ThreadRange range, const T* in, unsigned long pitch, RowRange rows, Step step) {
    const bool isOneByOne = range.last - range.first == pitch && pitch * sizeof(T) > shortRowBytes;
    unsigned long row = rows.first;
    const T* from = in + row * pitch;
    if (!isOneByOne) {
      for (; row + rowsAtOnce <= rows.last; row += rowsAtOnce, from += rowsAtOnce * pitch) {
        GPURUNTIME_SIMD
        for (ThreadIndex x = range.first; x < range.last; ++x) {
          unrolled<rowsAtOnce>([&](auto k) { step(Thread{x, 0, 0, x}, from[k * pitch + x], row + k); });
        }
      }
    }
    for (; row < rows.last; ++row, from += pitch) {
      GPURUNTIME_SIMD
      for (ThreadIndex x = range.first; x < range.last; ++x) step(Thread{x, 0, 0, x}, from[x], row);
    }
  }

  static constexpr ThreadIndex listedAtOnce = detail::listedAtOnce;

  template <class ThreadAt, class Lists, class SlotOf, class Write>
  static GPURUNTIME_INLINE void writeListed(ThreadIndex threads, ThreadAt threadAt, Lists lists, SlotOf slotOf,
                                            Write write) {
    detail::Numbers answers, listed;
    GPURUNTIME_SIMD
    for (ThreadIndex i = 0; i < threads; ++i) answers[i] = static_cast<unsigned char>(lists(threadAt(i)));
    const ThreadIndex count = detail::listAnswered(listed, answers, threads);
    if (count == 0) return;
    const unsigned long slot = slotOf(threadAt(listed[0]));
    GPURUNTIME_SIMD
    for (ThreadIndex j = 0; j < count; ++j) write(threadAt(listed[j]), slot + j);
  }
  // So many stay in the first level beside what they lead to.
  static constexpr ThreadIndex placesAtOnce = 256;

  // From here on a vectorised loop along x is faster than one that strides through memory.
  static constexpr ThreadIndex longEnough = 16;

  template <class Step>
  GPURUNTIME_INLINE void runThreads(ThreadIndex endX, ThreadIndex endY, ThreadIndex endZ, Step step) const {
    const ThreadIndex sizeX = shape().x, sizeY = shape().y;
    for (ThreadIndex z = 0; z < endZ; ++z) {
      for (ThreadIndex y = 0; y < endY; ++y) {
        GPURUNTIME_SIMD
        for (ThreadIndex x = 0; x < endX; ++x) step(Thread{x, y, z, (z * sizeY + y) * sizeX + x});
      }
    }
  }

  Extent index_;
  Extent grid_;
  Extent shape_;
  JoinedLines* joinedLines_;
};

/// Whether tests of a thread's bounds cost next to nothing. Here a block had best have a step without them for the case
/// that needs none.
inline constexpr bool testsAreCheap = false;

/// Blocks whose work is best done at once, if each has little to do. The checking mode runs them one by one.
inline constexpr unsigned int blocksAtOnce = checking::enabled ? 1 : 16;

/// Threads are turns of a loop, so a block as a whole can choose better loops. The checking mode runs each for itself.
inline constexpr bool prefersWholeBlocks = !checking::enabled;

/// A variable of each thread of a block of at most N threads that lives across steps.
template <class T, unsigned int N>
class PerThread {
 public:
  T& operator[](const Thread& thread) { return slots_[thread.lane]; }
  const T& operator[](const Thread& thread) const { return slots_[thread.lane]; }

  T* slots() { return slots_; }
  const T* slots() const { return slots_; }

  /// Sets the variable of all threads of a pack.
  GPURUNTIME_INLINE void set(const Pack& pack, LongWords words) {
    static_assert(sizeof(T) == 8 && N % Pack::size == 0, "one lane for each thread");
    std::memcpy(&slots_[pack.first], &words, sizeof words);
  }

 private:
  alignas(64) T slots_[N];
};

}  // namespace gpuruntime::platform
