#include <gpuruntime/elmath/logicaltransforms.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::CUDATraits;

// output[i] = Predicate::holds(input[i]).
template <class Predicate, class T>
struct LogicalKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, bool* output, const T* input) {
    if (it.isOutside()) return;
    output[it.index] = Predicate::holds(input[it.index]);
  }
};

template <class T>
struct IsNonZeroKernel : LogicalKernel<IsNonZeroKernel<T>, T> {
  static GPURUNTIME_DEVICE bool holds(const T& value) { return !CUDATraits<T>::isZero(value); }
};

template <class T>
struct IsNeitherZeroNorNaNKernel : LogicalKernel<IsNeitherZeroNorNaNKernel<T>, T> {
  static GPURUNTIME_DEVICE bool holds(const T& value) {
    return !CUDATraits<T>::isZero(value) & !CUDATraits<T>::isNaN(value);
  }
};

template <class T>
struct IsNaNKernel : LogicalKernel<IsNaNKernel<T>, T> {
  static GPURUNTIME_DEVICE bool holds(const T& value) { return CUDATraits<T>::isNaN(value); }
};

template <class T>
struct IsInfKernel : LogicalKernel<IsInfKernel<T>, T> {
  static GPURUNTIME_DEVICE bool holds(const T& value) { return CUDATraits<T>::isInf(value); }
};

template <class T>
struct IsNaNOrInfKernel : LogicalKernel<IsNaNOrInfKernel<T>, T> {
  static GPURUNTIME_DEVICE bool holds(const T& value) {
    return CUDATraits<T>::isNaN(value) | CUDATraits<T>::isInf(value);
  }
};

}  // namespace

template <class T>
void IsNonZero::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<IsNonZeroKernel<T>>(stream, n, output, input);
}

template <class T>
void IsNeitherZeroNorNaN::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input,
                                                 unsigned long n) const {
  elementwise::launchWithDeviceFunctor<IsNeitherZeroNorNaNKernel<T>>(stream, n, output, input);
}

template <class T>
void IsNaN::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<IsNaNKernel<T>>(stream, n, output, input);
}

template <class T>
void IsInf::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<IsInfKernel<T>>(stream, n, output, input);
}

template <class T>
void IsNaNOrInf::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<IsNaNOrInfKernel<T>>(stream, n, output, input);
}

GPURUNTIME_INSTANTIATE(IsNonZero, ALL_TYPES);
GPURUNTIME_INSTANTIATE(IsNeitherZeroNorNaN, ALL_TYPES);
GPURUNTIME_INSTANTIATE(IsNaN, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(IsInf, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(IsNaNOrInf, FLOAT_TYPES);

}  // namespace gpuruntime
