#include <gpuruntime/indexing/checkvalidfindmax.hpp>

#include <cmath>
#include <limits>

#include "platform/thrust.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

template <class T>
struct ValidAndMax {
  bool valid;
  T largest;
};

template <class T>
struct validAndValue {
  GPURUNTIME_HOST_DEVICE ValidAndMax<T> operator()(const T& x) const {
    const bool isValid = (x >= 1) & (x < std::numeric_limits<T>::infinity()) & (x == std::trunc(x));
    return {isValid, x};
  }
};

template <class T>
struct stillValidAndMax {
  GPURUNTIME_HOST_DEVICE ValidAndMax<T> operator()(const ValidAndMax<T>& a, const ValidAndMax<T>& b) const {
    return {a.valid && b.valid, a.largest < b.largest ? b.largest : a.largest};
  }
};

}  // namespace

template <class T>
std::pair<bool, double> CheckValidFindMax::Invoker<T>::operator()(const T* input, unsigned long n) const {
  const auto elements = thrust::make_transform_iterator(input, validAndValue<T>());
  const ValidAndMax<T> all =
      thrust::reduce(thrust::device, elements, elements + n, ValidAndMax<T>{true, 0}, stillValidAndMax<T>());
  return {all.valid, all.valid ? all.largest : 0};
}

GPURUNTIME_INSTANTIATE(CheckValidFindMax, DOUBLE_TYPES);

}  // namespace gpuruntime
