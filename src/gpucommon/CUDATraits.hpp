/// @file
/// Zero, one and the predicates of every element type, for host and device.
#pragma once

#include <limits>
#include <type_traits>

#include "gpucommon/CUDATypes.hpp"

namespace gpucommon {

namespace CUDATraitsDetail {

// Tests are joined by & and |: with && and || the loops over elements would keep branches, and not vectorise.

template <class T>
inline constexpr bool isFloating = std::is_floating_point_v<typename CUDAComplexToReal<T>::type>;

/// 0, and (0, 0) for a complex type.
template <class T>
GPURUNTIME_HOST_DEVICE T getZeroImpl() {
  return T{};
}

/// 1, and (1, 0) for a complex type.
template <class T>
GPURUNTIME_HOST_DEVICE T getOneImpl() {
  if constexpr (CUDAIsComplex<T>::value) {
    return T{1, 0};
  } else {
    return T(1);
  }
}

/// True if x, or each of its parts, equals 0: so of -0, never of NaN. A `bool` is told by its byte, whatever that
/// holds.
template <class T>
GPURUNTIME_HOST_DEVICE bool isZeroImpl(const T& x) {
  if constexpr (CUDAIsComplex<T>::value) {
    return (x.x == 0) & (x.y == 0);
  } else if constexpr (std::is_same_v<T, bool>) {
    return bitsOf(x) == 0;
  } else {
    return x == T(0);
  }
}

/// True if x, or one of its parts, is NaN; never for integers.
template <class T>
GPURUNTIME_HOST_DEVICE bool isNaNImpl([[maybe_unused]] const T& x) {
  if constexpr (!isFloating<T>) {
    return false;
  } else if constexpr (CUDAIsComplex<T>::value) {
    return isNaNImpl(x.x) | isNaNImpl(x.y);
  } else {
    return x != x;
  }
}

/// True if x, or one of its parts, is infinite; floating types only.
template <class T>
GPURUNTIME_HOST_DEVICE bool isInfImpl(const T& x) {
  static_assert(isFloating<T>, "only floating types have infinities");
  if constexpr (CUDAIsComplex<T>::value) {
    return isInfImpl(x.x) | isInfImpl(x.y);
  } else {
    constexpr T infinity = std::numeric_limits<T>::infinity();
    return (x == infinity) | (x == -infinity);
  }
}

/// True if a equals b; NaN equals nothing. Real types only.
template <class T>
GPURUNTIME_HOST_DEVICE bool isequalImpl(const T& a, const T& b) {
  static_assert(!CUDAIsComplex<T>::value, "equality is for real types");
  return a == b;
}

/// True if a equals b or both are NaN. Real types only.
template <class T>
GPURUNTIME_HOST_DEVICE bool isequalwithequalnansImpl(const T& a, const T& b) {
  return isequalImpl(a, b) | (isNaNImpl(a) & isNaNImpl(b));
}

}  // namespace CUDATraitsDetail

/// The traits of an element type: each is the function of CUDATraitsDetail whose name has Impl behind it.
template <class T>
struct CUDATraits {
  static constexpr bool iscomplex = CUDAIsComplex<T>::value;

  static GPURUNTIME_HOST_DEVICE T getZero() { return CUDATraitsDetail::getZeroImpl<T>(); }
  static GPURUNTIME_HOST_DEVICE T getOne() { return CUDATraitsDetail::getOneImpl<T>(); }
  static GPURUNTIME_HOST_DEVICE bool isZero(const T& x) { return CUDATraitsDetail::isZeroImpl(x); }
  static GPURUNTIME_HOST_DEVICE bool isNaN(const T& x) { return CUDATraitsDetail::isNaNImpl(x); }
  static GPURUNTIME_HOST_DEVICE bool isInf(const T& x) { return CUDATraitsDetail::isInfImpl(x); }
  static GPURUNTIME_HOST_DEVICE bool isequal(const T& a, const T& b) { return CUDATraitsDetail::isequalImpl(a, b); }
  static GPURUNTIME_HOST_DEVICE bool isequalwithequalnans(const T& a, const T& b) {
    return CUDATraitsDetail::isequalwithequalnansImpl(a, b);
  }
};

}  // namespace gpucommon
