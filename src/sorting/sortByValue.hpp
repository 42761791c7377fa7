/// @file
/// What the sorts of vectors and of matrices share: NaNs are moved aside, and the other elements are sorted by value,
/// with other arrays carried along.
///
/// Thrust sorts integers of up to 64 bits by their digits, and everything else by comparisons, which takes it several
/// times as long. So it is handed keys: unsigned integers for all real types, and for complex values their magnitudes,
/// taken once, beside them. Thereby the order of signed zeros, too, is the same on both backends and in every version
/// of Thrust. Keys always ascend, for version 3.0 on the cpu takes a negative `int` for a large one, and mixes up
/// arrays that are carried in descending order.
#pragma once

#include <cstring>
#include <type_traits>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathcomplex.hpp"
#include "platform/thrust.hpp"

namespace gpuruntime {

/// True if x is NaN, or has a part that is; with NAN_WANTED false, if it is not.
template <class T, bool NAN_WANTED = true>
struct isNanVal {
  GPURUNTIME_HOST_DEVICE bool operator()(const T& x) const { return gpucommon::CUDATraits<T>::isNaN(x) == NAN_WANTED; }
};

/// isNanVal of element 0 of a tuple.
template <class T, bool NAN_WANTED = true>
struct isNanTuple {
  template <class Tuple>
  GPURUNTIME_HOST_DEVICE bool operator()(const Tuple& tuple) const {
    return isNanVal<T, NAN_WANTED>()(thrust::get<0>(tuple));
  }
};

struct isNegativeZero {
  GPURUNTIME_HOST_DEVICE bool operator()(const double& x) const { return gpucommon::bitsOf(x) == 1ULL << 63; }
};

/// How signed zeros are sorted: -0 before +0, or as equals, which keep their order.
enum class Zeros { byBits, asEquals };

/// What Thrust sorts in place of an element that is not NaN: unsigned integers that ascend, whichever way the elements
/// are to go.
template <class T>
struct SortKey {
  using type = gpucommon::StorageOf<T>;
  using Order = thrust::less<type>;
  static constexpr type sign = type{1} << (8 * sizeof(T) - 1);

  static Order order(bool) { return {}; }

  template <Zeros ZEROS>
  struct Encode {
    type mask;

    explicit Encode(bool ascending) : mask(ascending ? 0 : ~type{0}) {}
    GPURUNTIME_HOST_DEVICE type operator()(const T& x) const {
      type bits = gpucommon::bitsOf(x);
      if constexpr (std::is_floating_point_v<T>) {
        if (ZEROS == Zeros::asEquals && x == 0) bits = 0;
        bits = (bits & sign) != 0 ? ~bits : bits | sign;
      } else if constexpr (std::is_signed_v<T>) {
        bits ^= sign;
      }
      return bits ^ mask;
    }
  };
  struct Decode {
    type mask;

    explicit Decode(bool ascending) : mask(ascending ? 0 : ~type{0}) {}
    GPURUNTIME_HOST_DEVICE T operator()(const type& key) const {
      type bits = key ^ mask;
      if constexpr (std::is_floating_point_v<T>) {
        bits = (bits & sign) != 0 ? bits ^ sign : ~bits;
      } else if constexpr (std::is_signed_v<T>) {
        bits ^= sign;
      }
      T x;
      std::memcpy(&x, &bits, sizeof x);
      return x;
    }
  };
};

/// A complex value beside its magnitude.
struct MagnitudeAndValue {
  double magnitude;
  double re, im;

  GPURUNTIME_HOST_DEVICE double2 value() const { return double2{re, im}; }
};

struct MagnitudeOrder {
  bool ascending;

  GPURUNTIME_HOST_DEVICE bool operator()(const MagnitudeAndValue& a, const MagnitudeAndValue& b) const {
    return ascending ? precedes(a, b) : precedes(b, a);
  }
  static GPURUNTIME_HOST_DEVICE bool precedes(const MagnitudeAndValue& a, const MagnitudeAndValue& b) {
    using gpucommon::bitsOf;
    if (a.magnitude != b.magnitude) return a.magnitude < b.magnitude;
    if (bitsOf(a.re) == bitsOf(b.re) && bitsOf(a.im) == bitsOf(b.im)) return false;
    return gpucommon::scalarmath::cmincompare(a.value(), b.value());
  }
};

template <>
struct SortKey<double2> {
  using type = MagnitudeAndValue;
  using Order = MagnitudeOrder;

  static Order order(bool ascending) { return {ascending}; }

  template <Zeros ZEROS>
  struct Encode {
    explicit Encode(bool) {}
    GPURUNTIME_HOST_DEVICE type operator()(const double2& z) const {
      return {gpucommon::scalarmath::magnitude(z), z.x, z.y};
    }
  };
  struct Decode {
    explicit Decode(bool) {}
    GPURUNTIME_HOST_DEVICE double2 operator()(const type& key) const { return key.value(); }
  };
};

/// True if the predicate holds for some element.
template <class Predicate, class T>
bool someElementIs(const T* data, unsigned long n) {
  const auto answers = thrust::make_transform_iterator(data, Predicate());
  return thrust::reduce(thrust::device, answers, answers + n, false, thrust::logical_or<bool>());
}

/// Several arrays as one, of tuples; one alone as it is.
template <class T>
T* zipped(T* array) {
  return array;
}
template <class T, class... More>
auto zipped(T* first, More*... more) {
  return thrust::make_zip_iterator(thrust::make_tuple(first, more...));
}

/// Moves NaNs behind the other elements if ascending, else in front of them; both keep their order. The arrays
/// `carried` move with them. Returns the number of NaNs.
template <class T, class... Carried>
unsigned long moveNaNsAside(bool ascending, unsigned long n, T* data, Carried*... carried) {
  const auto elements = zipped(data, carried...);
  const auto countInFront = [&](auto predicate) {
    return static_cast<unsigned long>(thrust::stable_partition(thrust::device, elements, elements + n, predicate) -
                                      elements);
  };
  if constexpr (sizeof...(Carried) == 0) {
    return ascending ? n - countInFront(isNanVal<T, false>()) : countInFront(isNanVal<T>());
  } else {
    return ascending ? n - countInFront(isNanTuple<T, false>()) : countInFront(isNanTuple<T>());
  }
}

/// Sorts elements of which none is NaN. Equal ones keep their order. The arrays `carried` move with them.
template <Zeros ZEROS, class T, class... Carried>
void sortNumbers(bool ascending, unsigned long n, T* data, Carried*... carried) {
  using Key = SortKey<T>;
  const platform::Temporary<typename Key::type> memory(n);
  auto* const keys = memory.data();
  thrust::transform(thrust::device, data, data + n, keys, typename Key::template Encode<ZEROS>(ascending));
  const auto sortKeys = [&](auto*... moved) {
    const auto order = Key::order(ascending);
    if constexpr (sizeof...(moved) == 0) {
      thrust::stable_sort(thrust::device, keys, keys + n, order);
    } else {
      thrust::stable_sort_by_key(thrust::device, keys, keys + n, zipped(moved...), order);
    }
  };
  // Keys that take signed zeros for equals don't tell which one was which.
  if constexpr (std::is_same_v<T, double> && ZEROS == Zeros::asEquals) {
    if (someElementIs<isNegativeZero>(data, n)) return sortKeys(data, carried...);
  }
  sortKeys(carried...);
  thrust::transform(thrust::device, keys, keys + n, data, typename Key::Decode(ascending));
}

/// Sorts data by value, NaNs last if ascending, else first. Equal elements keep their order, NaNs among themselves too.
/// The arrays `carried` move with them.
template <Zeros ZEROS, class T, class... Carried>
void sortByValue(bool ascending, unsigned long n, T* data, Carried*... carried) {
  const bool hasNaN = someElementIs<isNanVal<T>>(data, n);
  const unsigned long nans = hasNaN ? moveNaNsAside(ascending, n, data, carried...) : 0;
  const unsigned long first = ascending ? 0 : nans;
  sortNumbers<ZEROS>(ascending, n - nans, data + first, (carried + first)...);
}

}  // namespace gpuruntime
