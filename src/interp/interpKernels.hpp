/// @file
/// The value of a query, when its bins are known: where it stands in each dimension, and the steps from points to it.
#pragma once

#include <gpuruntime/interptype.hpp>

#include <cmath>
#include <type_traits>

#include "gpucommon/ptxmathreal.hpp"
#include "platform/platform.hpp"

namespace gpuruntime::interp {

using gpucommon::CUDATraits;

/// The methods of a call.
struct Methods {
  InterpType inRange;
  InterpType outOfRange;
};

/// The highest bin, in 32 bits.
GPURUNTIME_HOST_DEVICE unsigned long lastBin(unsigned long n) {
  return static_cast<unsigned int>(n - 2);
}

/// A non-negative integer of less than 2^52. Lanes of 64 bits may have no conversion of their own.
GPURUNTIME_DEVICE long long exactInteger(double value) {
  return static_cast<long long>(gpucommon::bitsOf(value + 0x1p52) & 0x000FFFFFFFFFFFFF);
}

// A grid is an array, or the pair that stands for a colon grid, of which x is the coordinate of the first point.

template <class T>
GPURUNTIME_DEVICE T gridPoint(const T* grid, unsigned long i) {
  return platform::readOnlyLoad(grid + i);
}
GPURUNTIME_DEVICE double gridPoint(const double2& grid, unsigned long i) {
  return grid.x + platform::exactDouble(i);
}

/// The type of a grid's coordinates in arithmetic.
template <class GridArg>
using CoordinateOf = decltype(gridPoint(GridArg(), 0));

/// What a query takes of the two points of its bin.
enum Choice : long long { chooseLinear, chooseLower, chooseUpper, chooseExtrapolation, chooseNaN };

/// Where a query stands in one dimension. C is the type of the coordinates.
template <class C>
struct Place {
  unsigned long bin;  ///< In the grid, whatever the query.
  C t;                ///< Distance from the bin's lower point, in bins.
  long long choice;   ///< As wide as the other members, so that loops over threads need no conversion.
};

template <class C>
GPURUNTIME_DEVICE C gridFraction(const C*, C toLower, C spacing) {
  return toLower * (C(1) / spacing);
}
GPURUNTIME_DEVICE double gridFraction(const double2&, double toLower, double) {
  return toLower;
}

// Most calls are *plain*: linear, all queries within the grid, no result NaN. Loops over threads are first made for
// that, with neither choices nor repairs, and then again where a result was NaN.

/// The place of q, of which the bin is known. Without branches: all choices are made of the same reads.
template <bool isPlain = false, class GridArg, class T>
GPURUNTIME_DEVICE Place<CoordinateOf<GridArg>> placeQuery(const GridArg& grid, T q, long long bin, unsigned long n,
                                                          Methods methods) {
  using C = CoordinateOf<GridArg>;
  const unsigned long last = lastBin(n);
  const bool isInside = isPlain || static_cast<unsigned long>(bin) <= last;
  const bool isBelow = bin == BinBelowGrid, isAbove = bin == BinAboveGrid;
  const unsigned long b = isInside ? static_cast<unsigned long>(bin) : (isAbove ? last : 0);

  const C at = static_cast<C>(q), left = gridPoint(grid, b), right = gridPoint(grid, b + 1);
  const C toLower = at - left, toUpper = right - at;
  if constexpr (isPlain) return {b, gridFraction(grid, toLower, right - left), chooseLinear};
  const bool takesUpper = isInside ? !(toUpper > toLower) : isAbove;

  const long long inside = methods.inRange, outside = methods.outOfRange;
  const long long method = isInside ? inside : outside;
  const long long nearest = takesUpper ? chooseUpper : chooseLower;
  const long long constant = method == InterpTypeConstant ? chooseExtrapolation : nearest;
  const long long choice = method == InterpTypeLinear ? chooseLinear : constant;
  return {b, gridFraction(grid, toLower, right - left), isInside | isBelow | isAbove ? choice : chooseNaN};
}

/// The linear value of a real pair, before the repair.
template <class R, class V, class C>
GPURUNTIME_DEVICE R linearPart(V lo, V hi, C t) {
  const double weight = t, otherWeight = 1.0 - weight;
  if constexpr (std::is_same_v<V, double>) {
    return static_cast<R>(std::fma(lo, otherWeight, hi * weight));
  } else if constexpr (std::is_same_v<C, double>) {
    return static_cast<float>(lo * otherWeight) + static_cast<float>(hi * weight);
  } else {
    return std::fma(hi, t, static_cast<float>(lo * otherWeight));
  }
}

template <class R, class V, class C>
GPURUNTIME_DEVICE R linearInterpCachedVal(const V& lo, const V& hi, C t) {
  if constexpr (CUDATraits<V>::iscomplex) {
    return {linearPart<RealOf<R>>(lo.x, hi.x, t), linearPart<RealOf<R>>(lo.y, hi.y, t)};
  } else {
    return linearPart<R>(lo, hi, t);
  }
}

// Chooses without a branch, complex values by parts.
template <class R>
GPURUNTIME_DEVICE R chosen(bool condition, const R& yes, const R& no) {
  if constexpr (CUDATraits<R>::iscomplex) {
    return {condition ? yes.x : no.x, condition ? yes.y : no.y};
  } else {
    return condition ? yes : no;
  }
}

template <class R>
GPURUNTIME_DEVICE R missingValue() {
  if constexpr (CUDATraits<R>::iscomplex) {
    return {gpucommon::scalarmath::ptxGetNaN<RealOf<R>>(), gpucommon::scalarmath::ptxGetNaN<RealOf<R>>()};
  } else {
    return gpucommon::scalarmath::ptxGetNaN<R>();
  }
}

/// The value of a query between two neighbouring values.
template <class R, bool isPlain = false, class V, class C>
GPURUNTIME_DEVICE R interpolateCachedVal(const Place<C>& place, const V& left, const V& right, const R& extrapolation) {
  if constexpr (isPlain) return linearInterpCachedVal<R>(left, right, place.t);
  using gpucommon::castNumeric;
  const R lo = castNumeric<R>(left), hi = castNumeric<R>(right);
  const R linear = linearInterpCachedVal<R>(left, right, place.t);
  const bool isBroken = CUDATraits<R>::isNaN(linear);
  const R repaired =
      chosen(isBroken & CUDATraits<R>::isInf(hi), lo, chosen(isBroken & CUDATraits<R>::isInf(lo), hi, linear));
  const R fill = chosen(place.choice == chooseNaN, missingValue<R>(), extrapolation);
  const R point = chosen(place.choice == chooseUpper, hi, lo);
  const R value = chosen(place.choice == chooseLinear, repaired, point);
  return chosen(place.choice >= chooseExtrapolation, fill, value);
}

/// The value of a query on one line of values.
template <class R, bool isPlain = false, class V, class C>
GPURUNTIME_DEVICE R interpolate(const Place<C>& place, const V* values, const R& extrapolation) {
  const V* const points = values + place.bin;
  return interpolateCachedVal<R, isPlain>(place, platform::readOnlyLoad(points), platform::readOnlyLoad(points + 1),
                                          extrapolation);
}

/// The value of a query in D dimensions: along dimension D - 1, between the values on two slabs.
template <unsigned int D, bool isPlain = false, class V, class C>
GPURUNTIME_DEVICE V interpolateNd(const Place<C>* places, const V* values, const unsigned long* strides,
                                  const V& extrapolation) {
  if constexpr (D == 1) {
    return interpolate<V, isPlain>(places[0], values, extrapolation);
  } else {
    const unsigned long stride = strides[D - 1];
    const V* const slab = values + places[D - 1].bin * stride;
    const V lower = interpolateNd<D - 1, isPlain>(places, slab, strides, extrapolation);
    const V upper = interpolateNd<D - 1, isPlain>(places, slab + stride, strides, extrapolation);
    return interpolateCachedVal<V, isPlain>(places[D - 1], lower, upper, extrapolation);
  }
}

/// Runs `run(isPlain)`, which makes `live` results: with true where calls can be plain, and with false where they can't
/// or a result is NaN.
template <class Block, class R, class Run>
GPURUNTIME_DEVICE void runPlainFirst(const Block& block, platform::Live live, const R* results, bool canBePlain,
                                     Run run) {
  if (canBePlain) {
    run(std::true_type());
    const bool isBroken =
        block.findsAny(live, [=](platform::Thread thread) { return CUDATraits<R>::isNaN(results[thread.x]); });
    if (!isBroken) return;
  }
  run(std::false_type());
}

}  // namespace gpuruntime::interp
