/// @file
/// Addition, subtraction and multiplication of two elements of one type, for host and device.
///
/// Integers saturate, with two exceptions that wrap: 64-bit products, which have no wider integer to be formed in, and
/// the products of integer complex types. Floating operations are rounded one by one.
#pragma once

#include <limits>
#include <type_traits>

#include "gpucommon/CUDATypes.hpp"
#include "gpucommon/ptxmathcomplex.hpp"

namespace gpucommon {

namespace CUDAOpsDetail {

// Unsigned arithmetic wraps where signed arithmetic is undefined. Narrower types would be promoted to int.
template <class T>
using WrappingInteger = std::conditional_t<(sizeof(T) > 4), unsigned long long, unsigned int>;

/// The nearest end of the range of `long long` for a result whose exact value has the sign of `a`.
GPURUNTIME_HOST_DEVICE long long endOnSideOf(long long a) {
  return a < 0 ? std::numeric_limits<long long>::min() : std::numeric_limits<long long>::max();
}

/// `a + b`: by parts for complex types, logical or for `bool`, saturating for integers.
template <class T>
GPURUNTIME_HOST_DEVICE T addImpl(const T& a, const T& b) {
  if constexpr (CUDAIsComplex<T>::value) {
    return T{addImpl(a.x, b.x), addImpl(a.y, b.y)};
  } else if constexpr (std::is_same_v<T, bool>) {
    return a | b;
  } else if constexpr (std::is_floating_point_v<T>) {
    return a + b;
  } else {
    // Clamped before the sum: without a wider type, a loop of sums takes half the instructions.
    using Limits = std::numeric_limits<T>;
    using Wrapping = WrappingInteger<T>;
    T clamped = a;
    if constexpr (std::is_signed_v<T>) {
      const T lowest = static_cast<T>(Limits::min() - (b < 0 ? b : T(0)));
      clamped = a < lowest ? lowest : a;
    }
    const T highest = static_cast<T>(Limits::max() - (b > 0 ? b : T(0)));
    clamped = clamped > highest ? highest : clamped;
    return static_cast<T>(static_cast<Wrapping>(clamped) + static_cast<Wrapping>(b));
  }
}

/// `a - b`: by parts for complex types, saturating for integers; there is none of `bool`.
template <class T>
GPURUNTIME_HOST_DEVICE T subtractImpl(const T& a, const T& b) {
  static_assert(!std::is_same_v<T, bool>, "logical values have no difference");
  if constexpr (CUDAIsComplex<T>::value) {
    return T{subtractImpl(a.x, b.x), subtractImpl(a.y, b.y)};
  } else if constexpr (std::is_floating_point_v<T>) {
    return a - b;
  } else if constexpr (CUDATypesDetail::DoubleSizedSignedIntegerImpl<T>::hasType) {
    using Wide = typename CUDADoubleSizedSignedInteger<T>::type;
    return castWithSaturation<T>(static_cast<Wide>(static_cast<Wide>(a) - static_cast<Wide>(b)));
  } else if constexpr (std::is_signed_v<T>) {
    using Wrapping = WrappingInteger<T>;
    const T difference = static_cast<T>(static_cast<Wrapping>(a) - static_cast<Wrapping>(b));
    // Only operands of different signs can overflow, and then the wrapped difference leaves the side of a.
    const bool overflows = ((a ^ b) & (a ^ difference)) < 0;
    return overflows ? endOnSideOf(a) : difference;
  } else {
    return a < b ? T(0) : a - b;
  }
}

/// `a * b`: logical and for `bool`, saturating up to 32 bits, modulo 2^64 for 64 bits; `ctimes` for floating complex
/// types, modulo 2^width of a part for integer ones.
template <class T>
GPURUNTIME_HOST_DEVICE T multiplyImpl(const T& a, const T& b) {
  if constexpr (CUDAIsComplex<T>::value) {
    using Real = typename CUDAComplexToReal<T>::type;
    if constexpr (std::is_floating_point_v<Real>) {
      return scalarmath::ctimes(a, b);
    } else {
      using Wrapping = WrappingInteger<Real>;
      const Wrapping ar = static_cast<Wrapping>(a.x), ai = static_cast<Wrapping>(a.y);
      const Wrapping br = static_cast<Wrapping>(b.x), bi = static_cast<Wrapping>(b.y);
      return T{static_cast<Real>(ar * br - ai * bi), static_cast<Real>(ai * br + ar * bi)};
    }
  } else if constexpr (std::is_same_v<T, bool>) {
    return a & b;
  } else if constexpr (std::is_floating_point_v<T>) {
    return a * b;
  } else if constexpr (CUDATypesDetail::DoubleSizedIntegerImpl<T>::hasType) {
    using Wide = typename CUDADoubleSizedInteger<T>::type;
    return castWithSaturation<T>(static_cast<Wide>(static_cast<Wide>(a) * static_cast<Wide>(b)));
  } else {
    using Wrapping = WrappingInteger<T>;
    return static_cast<T>(static_cast<Wrapping>(a) * static_cast<Wrapping>(b));
  }
}

}  // namespace CUDAOpsDetail

/// z with its imaginary part negated in its own class: two's complement without saturation for integers, a flipped sign
/// bit for floating point, NaN included.
template <class T>
GPURUNTIME_HOST_DEVICE T conjugated(T z) {
  using Real = typename CUDAComplexToReal<T>::type;
  using Bits = StorageOf<Real>;
  // On bits: the sign of a negated NaN would be the machine's, and the lowest integer has no negative in its type.
  const Bits bits = bitsOf(z.y);
  const Bits negated = std::is_floating_point_v<Real> ? static_cast<Bits>(bits ^ (Bits{1} << (8 * sizeof bits - 1)))
                                                      : static_cast<Bits>(0ULL - bits);
  std::memcpy(&z.y, &negated, sizeof negated);
  return z;
}

/// `a + b` in the arithmetic of T.
template <class T>
GPURUNTIME_HOST_DEVICE T add(const T& a, const T& b) {
  return CUDAOpsDetail::addImpl(a, b);
}

/// `a - b` in the arithmetic of T.
template <class T>
GPURUNTIME_HOST_DEVICE T subtract(const T& a, const T& b) {
  return CUDAOpsDetail::subtractImpl(a, b);
}

/// `a * b` in the arithmetic of T.
template <class T>
GPURUNTIME_HOST_DEVICE T multiply(const T& a, const T& b) {
  return CUDAOpsDetail::multiplyImpl(a, b);
}

}  // namespace gpucommon
