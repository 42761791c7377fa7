#include <gpuruntime/complex/conj.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDAOps.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

template <class T>
struct ConjKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, const T* in) {
    if (it.isOutside()) return;
    out[it.index] = gpucommon::conjugated(in[it.index]);
  }
};

}  // namespace

template <class T>
void Conj::Invoker<T>::operator()(CUstream_st* stream, T* out, const T* in, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<ConjKernel<T>>(stream, n, out, in);
}

GPURUNTIME_INSTANTIATE(Conj, COMPLEX_FLOAT_TYPES);

}  // namespace gpuruntime
