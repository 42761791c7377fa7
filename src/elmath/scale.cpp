#include <gpuruntime/elmath/scale.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathcomplex.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::CUDATraits;

// Both kernels get the array twice, to write and to read, so that a backend may stage what is written.
template <class T>
struct ScaleInplaceKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, const T* data, T s) {
    if (it.isOutside()) return;
    if constexpr (CUDATraits<T>::iscomplex) {
      out[it.index] = gpucommon::scalarmath::cdivide(data[it.index], s);
    } else {
      out[it.index] = data[it.index] / s;
    }
  }
};

template <class T>
struct ScaleByDoubleInplaceKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, const T* data, double s) {
    if (it.isOutside()) return;
    using Part = RealOf<T>;
    const T value = data[it.index];
    if constexpr (CUDATraits<T>::iscomplex) {
      out[it.index] = {static_cast<Part>(value.x / s), static_cast<Part>(value.y / s)};
    } else {
      out[it.index] = static_cast<T>(value / s);
    }
  }
};

}  // namespace

template <class T>
void ScaleInplace::Invoker<T>::operator()(CUstream_st* stream, T* data, T s, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<ScaleInplaceKernel<T>>(stream, n, data, static_cast<const T*>(data), s);
}

template <class T>
void ScaleByDoubleInplace::Invoker<T>::operator()(CUstream_st* stream, T* data, double s, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<ScaleByDoubleInplaceKernel<T>>(stream, n, data, static_cast<const T*>(data), s);
}

GPURUNTIME_INSTANTIATE(ScaleInplace, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(ScaleByDoubleInplace, FLOAT_TYPES);

}  // namespace gpuruntime
