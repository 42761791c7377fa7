#include <gpuruntime/interp/copyToVector.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "interp/sizeSymbols.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

GPURUNTIME_CONSTANT_SYMBOL(interp::SizesSymbol, interpDataSz);

template <class T>
struct CopyToVectorKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, const T* full,
                                      unsigned long dimension, unsigned long numDimensions, unsigned long count) {
    if (it.isOutside()) return;
    const unsigned long source = interp::getStride(interpDataSz, dimension, numDimensions) * it.index;
    if (source < count) out[it.index] = full[source];
  }
};

}  // namespace

template <class T>
void CopyToVector::Invoker<T>::operator()(CUstream_st* stream, T* out, const T* full, unsigned long dimension,
                                          unsigned long const* sizes, unsigned long numDimensions,
                                          unsigned long count) const {
  if (!interp::copySizesOrSay(interpDataSz, sizes, numDimensions, stream, "Failed to copy to constant memory")) return;
  elementwise::launchWithDeviceFunctor<CopyToVectorKernel<T>>(stream, sizes[dimension], out, full, dimension,
                                                              numDimensions, count);
}

GPURUNTIME_INSTANTIATE(CopyToVector, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
