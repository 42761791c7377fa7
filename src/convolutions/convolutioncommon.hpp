/// @file
/// What the convolution kernels share: the taps of the current call, tiles and sums by parts, and the step that adds
/// taps to the sums of all threads.
#pragma once

#include <gpuruntime/convolutions/conv.hpp>

#include <cmath>

#include "platform/platform.hpp"

namespace gpuruntime::convolutioncommon {

using platform::Live;
using platform::PerThread;
using platform::Thread;
using platform::ThreadIndex;
using platform::unrolled;

template <class T>
inline constexpr bool isComplex = detail::IsMember<T, ComplexFloatTypes>::value;

/// The taps of the current call, elements of any type from the first byte on.
struct alignas(16) Filter {
  unsigned char bytes[20736];
};

/// `sum` with x * f added: fused if real; the product of complex values is rounded by parts first.
template <class T>
GPURUNTIME_INLINE T withProduct(const T& x, const T& f, const T& sum) {
  if constexpr (isComplex<T>) {
    const RealOf<T> re = x.x * f.x - x.y * f.y;
    const RealOf<T> im = std::fma(x.x, f.y, x.y * f.x);
    return T{sum.x + re, sum.y + im};
  } else {
    return std::fma(x, f, sum);
  }
}

template <class T>
GPURUNTIME_INLINE T plus(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    return T{a.x + b.x, a.y + b.y};
  } else {
    return a + b;
  }
}

/// Elements whose real and imaginary parts stand in a container each, so that neighbouring threads find what they work
/// on side by side.
template <class T, class Container>
class ByParts {
 public:
  template <class Index>
  GPURUNTIME_INLINE T get(const Index& i) const {
    if constexpr (isComplex<T>) {
      return T{parts_[0][i], parts_[1][i]};
    } else {
      return parts_[0][i];
    }
  }
  template <class Index>
  GPURUNTIME_INLINE void set(const Index& i, const T& value) {
    if constexpr (isComplex<T>) {
      parts_[0][i] = value.x;
      parts_[1][i] = value.y;
    } else {
      parts_[0][i] = value;
    }
  }

  /// The elements of an array from `first` on.
  GPURUNTIME_INLINE ByParts<T, const RealOf<T>*> from(ThreadIndex first) const {
    ByParts<T, const RealOf<T>*> part;
    for (unsigned int k = 0; k < (isComplex<T> ? 2 : 1); ++k) part.parts_[k] = parts_[k] + first;
    return part;
  }

 private:
  template <class U, class OtherContainer>
  friend class ByParts;

  Container parts_[isComplex<T> ? 2 : 1];
};

/// A tile of N elements in shared storage.
template <class T, unsigned int N>
using Tile = ByParts<T, RealOf<T>[N]>;

/// A sum of each of N threads.
template <class T, unsigned int N>
using Sum = ByParts<T, PerThread<RealOf<T>, N>>;

// Taps that a step over the threads adds before it stores the sums again.
template <class T>
inline constexpr unsigned int tapsAtOnce = isComplex<T> ? 4 : 8;

/// Where a tile in shared storage has its elements: runs of A elements that follow one another are columns. Element e
/// stands at `e % A * ROW + e / A * COLUMN`. So a thread that owns the sums over a run finds its elements in a few
/// rows, each of which serves several sums, and its neighbours theirs beside them.
template <unsigned int A, unsigned int ROW, unsigned int COLUMN>
struct RunLayout {
  static constexpr unsigned int run = A;
  static constexpr unsigned int column = COLUMN;

  static constexpr unsigned int place(unsigned int element) { return element % A * ROW + element / A * COLUMN; }

  /// Elements in front of a tile that hold what `taps` taps reach: whole runs.
  static GPURUNTIME_DEVICE ThreadIndex lead(unsigned long taps) {
    return static_cast<ThreadIndex>((taps - 1 + A - 1) / A * A);
  }
};

// The largest halo of a type.
template <class T>
inline constexpr unsigned int longestHalo = std::is_same_v<T, double>   ? conv::haloOf<T>(64)
                                            : std::is_same_v<T, float>  ? conv::haloOf<T>(128)
                                            : std::is_same_v<T, float2> ? conv::haloOf<T>(36)
                                                                        : conv::haloOf<T>(24);

/// Elements from row to row of a RunLayout whose columns stand side by side and hold so many elements. Some columns
/// more keep elements that follow one another off each other's memory banks.
template <class T, unsigned int A>
constexpr unsigned int pitchOf(unsigned int elements) {
  constexpr unsigned int banks = 128 / sizeof(RealOf<T>);
  const unsigned int columns = (elements + A - 1) / A;
  return (columns + banks - banks / A - 1) / banks * banks + banks / A;
}

/// Adds COUNT taps to the P sums of every thread. The sums stand for runs of elements, GROUP apart in storage; the
/// first run, for the first of the taps, is at `first + place(thread)`.
template <unsigned int COUNT, class Layout, unsigned int GROUP, class Block, class T, class Tile, class Sum,
          unsigned int P, class Place>
GPURUNTIME_INLINE void addTaps(const Block& block, const T* filter, const Tile& tile, ThreadIndex first, Sum (&sums)[P],
                               Place place) {
  constexpr unsigned int A = Layout::run;
  // Runs before the first that these taps reach.
  constexpr unsigned int before = (COUNT - 1 + A - 1) / A;
  // The taps stay in registers while the threads run.
  T taps[COUNT];
  unrolled<COUNT>([&](auto k) { taps[k] = filter[k]; });
  const auto data = tile.from(first - before * Layout::column);
  block.forEachThread([&](Thread thread) {
    const ThreadIndex own = place(thread);
    unrolled<P>([&](auto m) {
      T sum = sums[m].get(thread);
      unrolled<COUNT>([&](auto k) {
        sum = withProduct(data.get(own + (m / A * GROUP + Layout::place(before * A + m % A - k))), taps[k], sum);
      });
      sums[m].set(thread, sum);
    });
  });
}

/// Adds the taps that are left, at most MOST.
template <unsigned int MOST, class Layout, unsigned int GROUP, class Block, class T, class Tile, class Sum,
          unsigned int P, class Place>
GPURUNTIME_INLINE void addLastTaps(const Block& block, const T* filter, unsigned long taps, const Tile& tile,
                                   ThreadIndex first, Sum (&sums)[P], Place place) {
  if constexpr (MOST > 0) {
    if (taps == MOST) return addTaps<MOST, Layout, GROUP>(block, filter, tile, first, sums, place);
    addLastTaps<MOST - 1, Layout, GROUP>(block, filter, taps, tile, first, sums, place);
  }
}

/// Gives every thread its P sums over all taps, in ascending order, from +0 on; see addTaps.
template <class Layout, unsigned int GROUP, class Block, class T, class Tile, class Sum, unsigned int P, class Place>
GPURUNTIME_INLINE void sumTaps(const Block& block, const T* filter, unsigned long taps, const Tile& tile,
                               ThreadIndex first, Sum (&sums)[P], Place place) {
  constexpr unsigned int A = Layout::run, most = tapsAtOnce<T>;
  static_assert(most % A == 0 && P % A == 0, "every step begins with a whole run");
  block.forEachThread([&](Thread thread) { unrolled<P>([&](auto m) { sums[m].set(thread, T{}); }); });
  for (; taps >= most; taps -= most) {
    addTaps<most, Layout, GROUP>(block, filter, tile, first, sums, place);
    first -= most / A * Layout::column;
    filter += most;
  }
  addLastTaps<most - 1, Layout, GROUP>(block, filter, taps, tile, first, sums, place);
}

}  // namespace gpuruntime::convolutioncommon
