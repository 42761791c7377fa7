/// @file
/// Subscripts as kernels take them, the places that they choose, and the guard that refuses those outside the array.
#pragma once

#include <gpuruntime/launcher/elementwise.hpp>
#include <gpuruntime/launcher/elementwise2d.hpp>
#include <gpuruntime/launcher/elementwise3d.hpp>
#include <gpuruntime/subscriptkinds.hpp>

#include <type_traits>

#include "gpucommon/CUDATypes.hpp"
#include "gpucommon/hostDeviceCast.hpp"
#include "indexing/errorword.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

#if defined(GPURUNTIME_CHECK_INDICES)
inline constexpr bool checksIndices = true;
#else
inline constexpr bool checksIndices = false;
#endif

namespace indexingdetail {
struct PromisesNothing {};
struct LeavesSomeElements {};
}  // namespace indexingdetail

/// Base of the functors that write their own element unless the guard refuses, which takes that promise from them.
using WritesUnlessRefused =
    std::conditional_t<checksIndices, indexingdetail::LeavesSomeElements, elementwise::WritesOwnElement>;

enum class Byte : unsigned char {};

/// What kernels move elements of T's width as. Single bytes have a type of their own: characters might be parts of a
/// list, which would then be read anew for every element.
template <class T>
using MovedAs = std::conditional_t<sizeof(T) == 1, Byte, gpucommon::StorageOf<T>>;

/// What a subscript of one of the kinds chooses: `at(k)` is its index number k, counted from 0.
template <class I>
struct Subscript;

template <>
struct Subscript<const double*> {
  const double* list;
  unsigned long extent;

  GPURUNTIME_DEVICE unsigned long at(unsigned long k) const {
    return gpucommon::castdetail::truncateTo<unsigned long>(list[k]) - 1;
  }
};

template <>
struct Subscript<double2> {
  unsigned long first;
  unsigned long step;
  unsigned long extent;

  GPURUNTIME_DEVICE unsigned long at(unsigned long k) const { return first + step * k; }
};

inline Subscript<const double*> subscript(const double* list, unsigned long extent) {
  return {list, extent};
}

inline Subscript<double2> subscript(double2 range, unsigned long extent) {
  const auto truncated = [](double x) {
    return static_cast<unsigned long>(gpucommon::castdetail::truncateTo<long>(x));
  };
  return {truncated(range.x) - 1, truncated(range.y), extent};
}

/// Of an element that the guard refuses.
inline constexpr unsigned long nowhere = ~0UL;

GPURUNTIME_DEVICE unsigned long unlessRefused(bool isInside, unsigned long place) {
  return !checksIndices || isInside ? place : nowhere;
}

/// The place in the subscripted array that subscripts choose for a thread.
template <class I1>
GPURUNTIME_DEVICE unsigned long placeIn(const cuda::ElementwiseIterator& it, const Subscript<I1>& first) {
  const unsigned long x = first.at(it.index);
  return unlessRefused(x < first.extent, x);
}

template <class I1, class I2>
GPURUNTIME_DEVICE unsigned long placeIn(const cuda::Elementwise2DIterator& it, const Subscript<I1>& first,
                                        const Subscript<I2>& second) {
  const unsigned long x = first.at(it.x), y = second.at(it.y);
  return unlessRefused(x < first.extent && y < second.extent, x + first.extent * y);
}

template <class I1, class I2, class I3>
GPURUNTIME_DEVICE unsigned long placeIn(const cuda::Elementwise3DIterator& it, const Subscript<I1>& first,
                                        const Subscript<I2>& second, const Subscript<I3>& third) {
  const unsigned long x = first.at(it.x), y = second.at(it.y), z = third.at(it.z);
  return unlessRefused(x < first.extent && y < second.extent && z < third.extent,
                       x + first.extent * (y + second.extent * z));
}

/// Where a thread's element stands in the array that isn't subscripted.
GPURUNTIME_DEVICE unsigned long denseIndex(const cuda::ElementwiseIterator& it) {
  return it.index;
}
GPURUNTIME_DEVICE unsigned long denseIndex(const cuda::Elementwise2DIterator& it) {
  return it.sizeX * it.y + it.x;
}
GPURUNTIME_DEVICE unsigned long denseIndex(const cuda::Elementwise3DIterator& it) {
  return (it.sizeY * it.z + it.y) * it.sizeX + it.x;
}

/// True if the guard refuses a place, which it then reports.
[[maybe_unused]] static GPURUNTIME_DEVICE bool isRefused([[maybe_unused]] unsigned long place) {
  if constexpr (checksIndices) {
    if (place == nowhere) raiseOutOfRange();
    return place == nowhere;
  } else {
    return false;
  }
}

/// Base of the functors of subscripts, by the kind of the first: a list's places lie in no order.
template <class I1>
using LooksUp =
    std::conditional_t<std::is_same_v<I1, const double*>, elementwise::LooksUpPlace, indexingdetail::PromisesNothing>;

/// Under the guard, sets the error word; false if that fails.
[[maybe_unused]] static bool armGuard([[maybe_unused]] CUstream_st* stream) {
  return !checksIndices || armErrorWord(stream);
}

}  // namespace gpuruntime

#define GPURUNTIME_SUBSCRIPTED_INVOKER(Family, I1, I2, I3, T) template struct Family<I1, I2, I3>::Invoker<T>;
#define GPURUNTIME_SUBSCRIPTED_INVOKER_OF(...) GPURUNTIME_SUBSCRIPTED_INVOKER(__VA_ARGS__)
#define GPURUNTIME_SUBSCRIPTED_TYPE(FamilyAndKinds, T) \
  GPURUNTIME_SUBSCRIPTED_INVOKER_OF(GPURUNTIME_UNPACKED FamilyAndKinds, T)
#define GPURUNTIME_SUBSCRIPTED_KINDS(Family, I1, I2, I3) \
  GPURUNTIME_ALL_TYPES(GPURUNTIME_SUBSCRIPTED_TYPE, (Family, I1, I2, I3))

/// Stands at the end of a unit: instantiates `Family<I1, I2, I3>::Invoker<T>` for all kinds and all element types.
#define GPURUNTIME_INSTANTIATE_SUBSCRIPTED(Family)                 \
  GPURUNTIME_SUBSCRIPT_KINDS(GPURUNTIME_SUBSCRIPTED_KINDS, Family) \
  static_assert(true, "a semicolon follows")
