#include <gpuruntime/build/genericones.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// U is the storage of an element's width: types of one width share a kernel.
template <class U>
struct GenericOnesKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, U* out, U value) {
    if (it.isOutside()) return;
    out[it.index] = value;
  }
};

}  // namespace

template <class T>
void GenericOnes::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out, T value) const {
  using Storage = gpucommon::StorageOf<T>;
  elementwise::launchWithDeviceFunctor<GenericOnesKernel<Storage>>(stream, n, reinterpret_cast<Storage*>(out),
                                                                   gpucommon::bitsOf(value));
}

GPURUNTIME_INSTANTIATE(GenericOnes, ALL_TYPES);

}  // namespace gpuruntime
