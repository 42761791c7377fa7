#include <gpuruntime/indexing/indexvalidation.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathreal.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

struct IndexValidationKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, bool* valid, const double* values) {
    if (it.isOutside()) return;
    const double x = values[it.index];
    valid[it.index] = (x >= 1) & !gpucommon::CUDATraits<double>::isInf(x) & gpucommon::scalarmath::isIntegerValued(x);
  }
};

}  // namespace

template <class T>
void IndexValidation::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, bool* valid, const T* values) const {
  elementwise::launchWithDeviceFunctor<IndexValidationKernel>(stream, n, valid, values);
}

GPURUNTIME_INSTANTIATE(IndexValidation, DOUBLE_TYPES);

}  // namespace gpuruntime
