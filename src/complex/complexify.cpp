#include <gpuruntime/complex/complexify.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::bitsOf;
using gpucommon::StorageOf;

// U is the storage of a part: types of one width share a kernel.
template <class U>
struct ComplexifyPtrPtrKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, ComplexOf<U>* out, const U* real,
                                      const U* imag) {
    if (it.isOutside()) return;
    out[it.index] = {real[it.index], imag[it.index]};
  }
};

template <class U>
struct ComplexifyPtrScalarKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, ComplexOf<U>* out, const U* real, U imag) {
    if (it.isOutside()) return;
    out[it.index] = {real[it.index], imag};
  }
};

template <class U>
struct ComplexifyScalarPtrKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, ComplexOf<U>* out, U real, const U* imag) {
    if (it.isOutside()) return;
    out[it.index] = {real, imag[it.index]};
  }
};

template <class T>
auto* asStorage(ComplexOf<T>* out) {
  return reinterpret_cast<ComplexOf<StorageOf<T>>*>(out);
}

template <class T>
auto* asStorage(const T* part) {
  return reinterpret_cast<const StorageOf<T>*>(part);
}

}  // namespace

template <class T>
void ComplexifyPtrPtr::Invoker<T>::operator()(CUstream_st* stream, ComplexOf<T>* out, const T* real, const T* imag,
                                              unsigned long n) const {
  elementwise::launchWithDeviceFunctor<ComplexifyPtrPtrKernel<StorageOf<T>>>(stream, n, asStorage<T>(out),
                                                                             asStorage(real), asStorage(imag));
}

template <class T>
void ComplexifyPtrScalar::Invoker<T>::operator()(CUstream_st* stream, ComplexOf<T>* out, const T* real, T imag,
                                                 unsigned long n) const {
  elementwise::launchWithDeviceFunctor<ComplexifyPtrScalarKernel<StorageOf<T>>>(stream, n, asStorage<T>(out),
                                                                                asStorage(real), bitsOf(imag));
}

template <class T>
void ComplexifyScalarPtr::Invoker<T>::operator()(CUstream_st* stream, ComplexOf<T>* out, T real, const T* imag,
                                                 unsigned long n) const {
  elementwise::launchWithDeviceFunctor<ComplexifyScalarPtrKernel<StorageOf<T>>>(stream, n, asStorage<T>(out),
                                                                                bitsOf(real), asStorage(imag));
}

GPURUNTIME_INSTANTIATE(ComplexifyPtrPtr, REAL_NUMERIC_TYPES);
GPURUNTIME_INSTANTIATE(ComplexifyPtrScalar, REAL_NUMERIC_TYPES);
GPURUNTIME_INSTANTIATE(ComplexifyScalarPtr, REAL_NUMERIC_TYPES);

}  // namespace gpuruntime
