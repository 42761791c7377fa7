#include <gpuruntime/sorting/issortedKernel.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathcomplex.hpp"
#include "platform/thrust.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// A call of its own: inlined for each of a thread's elements, the order of complex values would take more registers
// than a GPU has.
template <class T>
GPURUNTIME_CALLED bool comesBefore(const T& a, RealOf<T> magnitudeA, const T& b, RealOf<T> magnitudeB) {
  return gpucommon::scalarmath::cminnancompare(a, magnitudeA, b, magnitudeB);
}

/// True unless b must stand in front of a.
template <class T>
struct issortedCompare {
  GPURUNTIME_HOST_DEVICE bool operator()(const T& a, const T& b) const {
    using gpucommon::CUDATraits;
    if constexpr (CUDATraits<T>::iscomplex) {
      const RealOf<T> magnitudeA = gpucommon::scalarmath::magnitude(a);
      const RealOf<T> magnitudeB = gpucommon::scalarmath::magnitude(b);
      // Most pairs of sorted data need no more.
      using gpucommon::bitsOf;
      if (magnitudeA < magnitudeB || (bitsOf(a.x) == bitsOf(b.x) && bitsOf(a.y) == bitsOf(b.y))) return true;
      return !comesBefore(b, magnitudeB, a, magnitudeA);
    } else {
      return !((b < a) | (CUDATraits<T>::isNaN(a) & !CUDATraits<T>::isNaN(b)));
    }
  }
};

template <class T, class Condition>
bool holdsForNeighbours(const T* data, unsigned long n, Condition condition) {
  if (n < 2) return true;
  return thrust::inner_product(thrust::device, data, data + n - 1, data + 1, true, thrust::logical_and<bool>(),
                               condition);
}

}  // namespace

template <class T>
bool IsSortedVector::Invoker<T>::operator()(const T* data, unsigned long n) const {
  return holdsForNeighbours(data, n, issortedCompare<T>());
}

template <class T>
bool IsStronglySortedVector::Invoker<T>::operator()(const T* data, unsigned long n) const {
  return holdsForNeighbours(data, n, thrust::less<T>());
}

GPURUNTIME_INSTANTIATE(IsSortedVector, REAL_AND_COMPLEX_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(IsStronglySortedVector, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
