/// @file
/// What a reduction makes of one element before it is combined.
#pragma once

#include <type_traits>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/hostDeviceCast.hpp"

namespace gpuruntime::reductiontransforms {

using gpucommon::CUDATraits;

/// The element; of a `bool`, true for every byte but 0.
template <class T>
struct NoOp {
  static GPURUNTIME_DEVICE T apply(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
      return !CUDATraits<T>::isZero(value);
    } else {
      return value;
    }
  }
};

/// The element; of a `bool`, whose byte may be any, whether it is not 0.
template <class T>
struct Value {
  static GPURUNTIME_DEVICE T apply(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
      return !CUDATraits<T>::isZero(value);
    } else {
      return value;
    }
  }
};

/// The conversion to `double` or `double2`, rounded to nearest; `bool` gives 1 for every byte but 0.
template <class T, class D>
struct Cast {
  static GPURUNTIME_DEVICE D apply(const T& value) { return gpucommon::castNumeric<D>(value); }
};

/// True if the element, or a part of it, is not 0: so of NaN.
template <class T>
struct IsNotZero {
  static GPURUNTIME_DEVICE bool apply(const T& value) { return !CUDATraits<T>::isZero(value); }
};

/// True if the element, or a part of it, is not 0, and no part is NaN.
template <class T>
struct IsNotZeroAndNotNaN {
  static GPURUNTIME_DEVICE bool apply(const T& value) {
    return !CUDATraits<T>::isZero(value) & !CUDATraits<T>::isNaN(value);
  }
};

/// True if the element, or a part of it, is NaN.
template <class T>
struct IsNanTransform {
  static GPURUNTIME_DEVICE bool apply(const T& value) { return CUDATraits<T>::isNaN(value); }
};

/// True if the element, or a part of it, is infinite.
template <class T>
struct IsInfTransform {
  static GPURUNTIME_DEVICE bool apply(const T& value) { return CUDATraits<T>::isInf(value); }
};

/// True if the element, or a part of it, is NaN or infinite.
template <class T>
struct IsNanOrInfTransform {
  static GPURUNTIME_DEVICE bool apply(const T& value) {
    return CUDATraits<T>::isNaN(value) | CUDATraits<T>::isInf(value);
  }
};

}  // namespace gpuruntime::reductiontransforms
