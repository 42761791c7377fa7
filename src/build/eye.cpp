#include <gpuruntime/build/eye.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

template <class T>
struct EyeKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, unsigned long rows) {
    if (it.isOutside()) return;
    out[it.index * (rows + 1)] = gpucommon::CUDATraitsDetail::getOneImpl<T>();
  }
};

}  // namespace

template <class T>
void Eye::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out, unsigned long rows) const {
  elementwise::launchWithDeviceFunctor<EyeKernel<T>>(stream, n, out, rows);
}

GPURUNTIME_INSTANTIATE(Eye, ALL_TYPES);

}  // namespace gpuruntime
