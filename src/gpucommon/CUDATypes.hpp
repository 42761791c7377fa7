/// @file
/// Element types: storage classes, the real and the complex type of each other, double-sized integers and the
/// saturating integer cast, for host and device.
#pragma once

#include <gpuruntime/elementtypes.hpp>

#include <boost/mpl/push_back.hpp>
#include <boost/mpl/vector.hpp>
#include <cstring>
#include <limits>
#include <type_traits>

#include "platform/platform.hpp"

namespace gpucommon {

namespace CUDATypesDetail {

template <class Sequence, class... Types>
struct AppendAll;
template <class Sequence>
struct AppendAll<Sequence> {
  using type = Sequence;
};
template <class Sequence, class Next, class... Rest>
struct AppendAll<Sequence, Next, Rest...> : AppendAll<typename boost::mpl::push_back<Sequence, Next>::type, Rest...> {};

template <class List>
struct MplVectorOf;
template <class... Types>
struct MplVectorOf<gpuruntime::TypeList<Types...>> : AppendAll<boost::mpl::vector0<>, Types...> {};

}  // namespace CUDATypesDetail

/// The members of a `gpuruntime::TypeList`, in order, as a `boost::mpl` vector.
template <class List>
using MplVector = typename CUDATypesDetail::MplVectorOf<List>::type;

/// The unsigned type that stores elements of a width in bytes, where only the bits are moved.
template <unsigned long width>
struct StorageOfWidth;
// clang-format off
template <> struct StorageOfWidth<1>  { using type = unsigned char; };
template <> struct StorageOfWidth<2>  { using type = unsigned short; };
template <> struct StorageOfWidth<4>  { using type = unsigned int; };
template <> struct StorageOfWidth<8>  { using type = unsigned long long; };
template <> struct StorageOfWidth<16> { using type = ulonglong2; };
// clang-format on

/// The storage class of the width of T.
template <class T>
using StorageOf = typename StorageOfWidth<sizeof(T)>::type;

/// The bits of a value, in the storage class of its width.
template <class T>
GPURUNTIME_HOST_DEVICE StorageOf<T> bitsOf(const T& value) {
  StorageOf<T> bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

/// True of the two-component types.
template <class T>
struct CUDAIsComplex : gpuruntime::detail::IsMember<T, gpuruntime::ComplexTypes> {};

/// True of `double2`.
template <class T>
struct CUDAIsComplexDouble : std::is_same<T, double2> {};

/// The type of the parts of a complex type; a real type is its own.
template <class T>
struct CUDAComplexToReal {
  using type = gpuruntime::RealOf<T>;
};

/// The complex type whose parts have a numeric real type.
template <class T>
struct CUDARealToComplex {
  using type = gpuruntime::ComplexOf<T>;
};

namespace CUDATypesDetail {

template <class T>
inline constexpr bool isInteger = std::is_integral_v<T> && !std::is_same_v<T, bool>;

/// `type` is the integer of twice the width and the signedness of T, where `hasType` says that there is one.
template <class T, bool canDouble = (isInteger<T> && sizeof(T) <= 4)>
struct DoubleSizedIntegerImpl {
  static constexpr bool hasType = false;
};
template <class T>
struct DoubleSizedIntegerImpl<T, true> {
  static constexpr bool hasType = true;
  using Unsigned = typename StorageOfWidth<2 * sizeof(T)>::type;
  using type = std::conditional_t<std::is_signed_v<T>, std::make_signed_t<Unsigned>, Unsigned>;
};

/// `type` is the signed integer of twice the width of T, where `hasType` says that there is one.
template <class T, bool canDouble = DoubleSizedIntegerImpl<T>::hasType>
struct DoubleSizedSignedIntegerImpl {
  static constexpr bool hasType = false;
};
template <class T>
struct DoubleSizedSignedIntegerImpl<T, true> {
  static constexpr bool hasType = true;
  using type = std::make_signed_t<typename DoubleSizedIntegerImpl<T>::type>;
};

}  // namespace CUDATypesDetail

/// The integer of twice the width and the same signedness; none for 64 bits.
template <class T>
struct CUDADoubleSizedInteger {
  using type = typename CUDATypesDetail::DoubleSizedIntegerImpl<T>::type;
};

/// The signed integer of twice the width; none for 64 bits.
template <class T>
struct CUDADoubleSizedSignedInteger {
  using type = typename CUDATypesDetail::DoubleSizedSignedIntegerImpl<T>::type;
};

namespace CUDATypesDetail {

/// Which bounds of T a value of U can pass. Exactly one of the four holds.
template <class T, class U>
struct IntCastImplHelper {
  static_assert(isInteger<T> && isInteger<U>, "the saturating cast takes integers that are not logical");

  static constexpr bool holdsLowest = std::is_unsigned_v<U> || (std::is_signed_v<T> && sizeof(T) >= sizeof(U));
  static constexpr bool holdsHighest = std::numeric_limits<T>::digits >= std::numeric_limits<U>::digits;

  static constexpr bool NoSaturationNeeded = holdsLowest && holdsHighest;
  static constexpr bool SaturateUpperBoundOnly = holdsLowest && !holdsHighest;
  static constexpr bool SaturateLowerBoundOnly = !holdsLowest && holdsHighest;
  static constexpr bool SaturateLowerAndUpperBounds = !holdsLowest && !holdsHighest;
};

/// `value` clamped to the range of T. Only a bound that U can pass is compared with, so that it is exact in U.
template <class T, class U>
GPURUNTIME_HOST_DEVICE T intCastWithSaturationImpl(U value) {
  using Helper = IntCastImplHelper<T, U>;
  constexpr T lowest = std::numeric_limits<T>::min(), highest = std::numeric_limits<T>::max();
  if constexpr (Helper::NoSaturationNeeded) {
    return static_cast<T>(value);
  } else if constexpr (Helper::SaturateUpperBoundOnly) {
    return value > static_cast<U>(highest) ? highest : static_cast<T>(value);
  } else if constexpr (Helper::SaturateLowerBoundOnly) {
    return value < 0 ? T(0) : static_cast<T>(value);
  } else {
    const T notTooHigh = value > static_cast<U>(highest) ? highest : static_cast<T>(value);
    return value < static_cast<U>(lowest) ? lowest : notTooHigh;
  }
}

}  // namespace CUDATypesDetail

/// The integer `value` clamped to the range of the integer type T.
template <class T, class U>
GPURUNTIME_HOST_DEVICE T castWithSaturation(U value) {
  return CUDATypesDetail::intCastWithSaturationImpl<T, U>(value);
}

}  // namespace gpucommon
