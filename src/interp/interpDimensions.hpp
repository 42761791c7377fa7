/// @file
/// What the kernels of several dimensions are given.
#pragma once

#include "interp/indexSearchKernel.hpp"
#include "interp/interpKernels.hpp"

namespace gpuruntime::interp {

template <unsigned int D>
struct Sizes {
  unsigned long of[D];

  GPURUNTIME_HOST_DEVICE unsigned long product() const {
    unsigned long product = of[0];
    for (unsigned int d = 1; d < D; ++d) product *= of[d];
    return product;
  }

  /// Distances of neighbours along each dimension.
  GPURUNTIME_DEVICE Sizes strides() const {
    Sizes strides{{1}};
    for (unsigned int d = 1; d < D; ++d) strides.of[d] = strides.of[d - 1] * of[d - 1];
    return strides;
  }
};

/// The first D of the sizes.
template <unsigned int D>
GPURUNTIME_HOST_DEVICE Sizes<D> firstSizes(const unsigned long* sizes) {
  Sizes<D> first;
  for (unsigned int d = 0; d < D; ++d) first.of[d] = sizes[d];
  return first;
}

/// One entry a dimension: of grids, or of queries.
template <unsigned int D, class Entry>
struct Axes {
  Entry of[D];
};

/// What stands for a colon grid where the caller names none: the first point is 1.
constexpr double2 colonPair{1.0, 1.0};

/// The array of values, and what is done with it.
template <class V>
struct Field {
  const V* values;
  V extrapolation;
  Methods methods;
};

/// The places of one query in all dimensions.
template <unsigned int D, class C>
struct Places {
  Place<C> of[D];
};

template <bool isPlain = false, unsigned int D, class C, class V>
GPURUNTIME_DEVICE V interpolateAt(const Places<D, C>& places, const Field<V>& field, const Sizes<D>& strides) {
  return interpolateNd<D, isPlain>(places.of, field.values, strides.of, field.extrapolation);
}

}  // namespace gpuruntime::interp
