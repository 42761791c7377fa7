/// @file
/// What the convolution kernels share: the taps of the current call, tiles and sums by parts, and the step that adds
/// taps to the sums of all threads.
#pragma once

#include <gpuruntime/elementtypes.hpp>

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

/// Gives every thread its P sums over all taps, in ascending order, from +0 on. The sums stand for runs of elements,
/// GROUP apart in storage; the first run, for tap 0, is at `first + place(thread)`.
template <class Layout, unsigned int GROUP, class Block, class T, class Tile, class Sum, unsigned int P, class Place>
GPURUNTIME_INLINE void sumTaps(const Block& block, const T* filter, unsigned long taps, const Tile& tile,
                               ThreadIndex first, Sum (&sums)[P], Place place) {
  constexpr unsigned int A = Layout::run, most = tapsAtOnce<T>;
  static_assert(most % A == 0 && P % A == 0, "every step begins with a whole run");
  block.forEachThread([&](Thread thread) { unrolled<P>([&](auto m) { sums[m].set(thread, T{}); }); });
  const auto add = [&](auto count) {
    // Runs before the first that these taps reach.
    constexpr unsigned int before = (count - 1 + A - 1) / A;
    // The taps stay in registers while the threads run.
    T some[count];
    unrolled<count>([&](auto k) { some[k] = filter[k]; });
    const auto data = tile.from(first - before * Layout::column);
    block.forEachThread([&](Thread thread) {
      const ThreadIndex own = place(thread);
      unrolled<P>([&](auto m) {
        T sum = sums[m].get(thread);
        unrolled<count>([&](auto k) {
          sum = withProduct(data.get(own + (m / A * GROUP + Layout::place(before * A + m % A - k))), some[k], sum);
        });
        sums[m].set(thread, sum);
      });
    });
  };
  for (; taps >= most; taps -= most) {
    add(std::integral_constant<unsigned int, most>());
    first -= most / A * Layout::column;
    filter += most;
  }
  unrolled<most - 1>([&](auto k) {
    if (taps == k + 1) add(std::integral_constant<unsigned int, k + 1>());
  });
}

}  // namespace gpuruntime::convolutioncommon
