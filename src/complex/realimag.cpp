#include <gpuruntime/complex/realimag.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// U2 is a pair of storage classes: types of one width share a kernel.
template <class U2>
struct RealKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, RealOf<U2>* out, const U2* in) {
    if (it.isOutside()) return;
    out[it.index] = in[it.index].x;
  }
};

template <class U2>
struct ImagKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, RealOf<U2>* out, const U2* in) {
    if (it.isOutside()) return;
    out[it.index] = in[it.index].y;
  }
};

template <template <class> class Kernel, class T>
void takePart(CUstream_st* stream, RealOf<T>* out, const T* in, unsigned long n) {
  using U = gpucommon::StorageOf<RealOf<T>>;
  elementwise::launchWithDeviceFunctor<Kernel<ComplexOf<U>>>(stream, n, reinterpret_cast<U*>(out),
                                                             reinterpret_cast<const ComplexOf<U>*>(in));
}

}  // namespace

template <class T>
void Real::Invoker<T>::operator()(CUstream_st* stream, RealOf<T>* out, const T* in, unsigned long n) const {
  takePart<RealKernel>(stream, out, in, n);
}

template <class T>
void Imag::Invoker<T>::operator()(CUstream_st* stream, RealOf<T>* out, const T* in, unsigned long n) const {
  takePart<ImagKernel>(stream, out, in, n);
}

GPURUNTIME_INSTANTIATE(Real, COMPLEX_TYPES);
GPURUNTIME_INSTANTIATE(Imag, COMPLEX_TYPES);

}  // namespace gpuruntime
