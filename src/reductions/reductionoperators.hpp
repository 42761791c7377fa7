/// @file
/// The operators that reductions and scans combine elements by: an identity, and `apply(a, b)` with the running value,
/// or that of the lower lane, on the left.
#pragma once

#include <cstring>
#include <limits>
#include <type_traits>

#include "gpucommon/CUDAOps.hpp"
#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathcomplex.hpp"

namespace gpuruntime::reductionoperators {

/// `gpucommon::add`: rounded in floating types, saturating for integers, logical or for `bool`, by parts for complex
/// types. The identity is +0, so that -0 combined with it becomes +0.
template <class T>
struct Sum {
  static GPURUNTIME_DEVICE T identity() { return gpucommon::CUDATraits<T>::getZero(); }
  static GPURUNTIME_DEVICE T apply(const T& a, const T& b) { return gpucommon::add(a, b); }
};

/// `gpucommon::multiply`: rounded in floating types, saturating for integers to 32 bits, modulo 2^width for 64-bit and
/// complex integers, logical and for `bool`, `ctimes` for floating complex types. The identity is 1, or (1, 0).
template <class T>
struct Prod {
  static GPURUNTIME_DEVICE T identity() { return gpucommon::CUDATraits<T>::getOne(); }
  static GPURUNTIME_DEVICE T apply(const T& a, const T& b) { return gpucommon::multiply(a, b); }
};

// And and Or take their truth values in any type, as 0 and 1. They are joined by & and |: with && and || the loops over
// lanes would keep branches.

struct And {
  static GPURUNTIME_DEVICE bool identity() { return true; }
  template <class Flag>
  static GPURUNTIME_DEVICE Flag apply(Flag a, Flag b) {
    return a & b;
  }
};

struct Or {
  static GPURUNTIME_DEVICE bool identity() { return false; }
  template <class Flag>
  static GPURUNTIME_DEVICE Flag apply(Flag a, Flag b) {
    return a | b;
  }
};

/// A cheap test for complex elements, whose order takes square roots and angles: what it turns down does not beat
/// `best`. It compares squares of magnitudes with a bound that is wider than all that rounding can do to either.
template <class T, bool GREATEST>
struct Contender {
  using R = RealOf<T>;
  static constexpr R infinity = std::numeric_limits<R>::infinity();

  static GPURUNTIME_DEVICE R squareOf(const T& value) { return value.x * value.x + value.y * value.y; }

  /// Beyond every square where that of `best` is NaN, infinite, or so small that squares lose their digits.
  static GPURUNTIME_DEVICE R boundOf(const T& best) {
    constexpr R margin = sizeof(R) == 8 ? R(0x1p-40) : R(0x1p-16), least = sizeof(R) == 8 ? R(0x1p-960) : R(0x1p-100);
    const R square = squareOf(best);
    const bool isPlain = (square >= least) & (square <= std::numeric_limits<R>::max());
    return GREATEST ? (isPlain ? square * (1 - margin) : -infinity) : (isPlain ? square * (1 + margin) : infinity);
  }

  static GPURUNTIME_DEVICE bool mayBeat(const T& element, const T& best, R bound) {
    using gpucommon::bitsOf;
    const R square = squareOf(element);
    const bool isSame = (bitsOf(element.x) == bitsOf(best.x)) & (bitsOf(element.y) == bitsOf(best.y));
    return !isSame & !(GREATEST ? square < bound : square > bound);
  }
};

/// The smaller, or with GREATEST the greater, of two elements, by their order:
///
/// - floating types: by value, NaN behind all others; -0 is smaller than +0 in `apply`, and its equal in `beats`;
/// - complex types: `cminnancompare` and `cmaxnancompare`;
/// - `bool`: false is smaller.
///
/// `beats(a, b)` is true if a comes strictly first, of which `apply` makes use: it keeps a unless b beats it. The
/// identity is beaten by every element but NaN.
template <class T, bool GREATEST>
struct Extreme {
  using R = RealOf<T>;
  using Contender = reductionoperators::Contender<T, GREATEST>;
  static constexpr bool isComplex = gpucommon::CUDATraits<T>::iscomplex;
  static constexpr bool hasContenders = isComplex;
  static constexpr bool isFloating = std::is_floating_point_v<R>;

  static GPURUNTIME_DEVICE T identity() {
    if constexpr (isComplex) {
      return T{gpucommon::scalarmath::ptxGetNaN<R>(), gpucommon::scalarmath::ptxGetNaN<R>()};
    } else if constexpr (isFloating) {
      return gpucommon::scalarmath::ptxGetNaN<T>();
    } else {
      return GREATEST ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
    }
  }

  static GPURUNTIME_DEVICE bool beats(const T& a, const T& b) {
    namespace scalarmath = gpucommon::scalarmath;
    if constexpr (isComplex) {
      return GREATEST ? scalarmath::cmaxnancompare(a, b) : scalarmath::cminnancompare(a, b);
    } else if constexpr (isFloating) {
      return (GREATEST ? a > b : a < b) | ((a == a) & (b != b));
    } else {
      return GREATEST ? a > b : a < b;
    }
  }

  static GPURUNTIME_DEVICE T apply(const T& a, const T& b) {
    const T chosen = beats(b, a) ? b : a;
    if constexpr (!isComplex && isFloating) {
      // Equal values have the same bits, but for zeros: of those the sign bits are joined.
      using Bits = gpucommon::StorageOf<T>;
      const Bits bitsOfA = gpucommon::bitsOf(a), bitsOfB = gpucommon::bitsOf(b);
      const Bits joined = GREATEST ? bitsOfA & bitsOfB : bitsOfA | bitsOfB;
      T ranked;
      std::memcpy(&ranked, &joined, sizeof ranked);
      return a == b ? ranked : chosen;
    } else {
      return chosen;
    }
  }
};

template <class T>
using Min = Extreme<T, false>;
template <class T>
using Max = Extreme<T, true>;

}  // namespace gpuruntime::reductionoperators
