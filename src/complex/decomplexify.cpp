#include <gpuruntime/complex/decomplexify.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// U2 is a pair of storage classes: types of one width share a kernel.
template <class U2>
struct DecomplexifyKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, RealOf<U2>* real, RealOf<U2>* imag,
                                      const U2* in) {
    if (it.isOutside()) return;
    const U2 value = in[it.index];
    real[it.index] = value.x;
    imag[it.index] = value.y;
  }
};

}  // namespace

template <class T>
void Decomplexify::Invoker<T>::operator()(CUstream_st* stream, RealOf<T>* real, RealOf<T>* imag, const T* in,
                                          unsigned long n) const {
  using U = gpucommon::StorageOf<RealOf<T>>;
  elementwise::launchWithDeviceFunctor<DecomplexifyKernel<ComplexOf<U>>>(
      stream, n, reinterpret_cast<U*>(real), reinterpret_cast<U*>(imag), reinterpret_cast<const ComplexOf<U>*>(in));
}

GPURUNTIME_INSTANTIATE(Decomplexify, COMPLEX_TYPES);

}  // namespace gpuruntime
