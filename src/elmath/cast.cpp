#include <gpuruntime/elmath/cast.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/hostDeviceCast.hpp"
#include "gpucommon/ptxmathunsafe.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::castNumeric;
using gpucommon::PtxError;

template <class T, class U>
struct CastKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* destination, const U* source) {
    if (it.isOutside()) return;
    destination[it.index] = castNumeric<T>(source[it.index]);
  }
};

template <class T, class U>
struct CastBlockKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* destination, const U* source,
                                      unsigned long destinationOffset, unsigned long destinationPitch,
                                      unsigned long blockLength) {
    if (it.isOutside()) return;
    const unsigned long q = it.index / blockLength;
    destination[destinationOffset + (it.index - q * blockLength) + q * destinationPitch] =
        castNumeric<T>(source[it.index]);
  }
};

template <class T>
struct CastToBoolKernel : elementwise::WritesOwnElement, elementwise::FindsInElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, bool* destination, const T* source) {
    if (it.isOutside()) return;
    destination[it.index] = source[it.index] != 0;
  }
  static GPURUNTIME_DEVICE bool finds(const cuda::ElementwiseIterator& it, const bool*, const T* source) {
    return !it.isOutside() && gpucommon::CUDATraits<T>::isNaN(source[it.index]);
  }
  static GPURUNTIME_DEVICE void report(const bool*, const T*) {
    gpucommon::scalarmath::errorbody<double, PtxError::NaNToLogical>();
  }
};

template <class T, class U>
void castElements(CUstream_st* stream, unsigned long n, T* destination, const U* source) {
  if constexpr (std::is_same_v<T, U>) {
    (void)platform::cudaMemcpyAsync(destination, source, n * sizeof(T), cudaMemcpyDeviceToDevice, stream);
  } else {
    elementwise::launchWithDeviceFunctor<CastKernel<T, U>>(stream, n, destination, source);
  }
}

template <class T, class U>
void castBlocks(CUstream_st* stream, unsigned long n, T* destination, const U* source, unsigned long destinationOffset,
                unsigned long destinationPitch, unsigned long blockLength) {
  elementwise::launchWithDeviceFunctor<CastBlockKernel<T, U>>(stream, n, destination, source, destinationOffset,
                                                              destinationPitch, blockLength);
}

}  // namespace

template <class T, class U>
void CastToReal::Invoker<T, U>::operator()(CUstream_st* stream, unsigned long n, T* destination,
                                           const U* source) const {
  castElements(stream, n, destination, source);
}

template <class T, class U>
void CastToComplex::Invoker<T, U>::operator()(CUstream_st* stream, unsigned long n, T* destination,
                                              const U* source) const {
  castElements(stream, n, destination, source);
}

template <class T, class U>
void CastBlockToReal::Invoker<T, U>::operator()(CUstream_st* stream, unsigned long n, T* destination, const U* source,
                                                unsigned long destinationOffset, unsigned long destinationPitch,
                                                unsigned long blockLength) const {
  castBlocks(stream, n, destination, source, destinationOffset, destinationPitch, blockLength);
}

template <class T, class U>
void CastBlockToComplex::Invoker<T, U>::operator()(CUstream_st* stream, unsigned long n, T* destination,
                                                   const U* source, unsigned long destinationOffset,
                                                   unsigned long destinationPitch, unsigned long blockLength) const {
  castBlocks(stream, n, destination, source, destinationOffset, destinationPitch, blockLength);
}

template <class T>
void CastToBool::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, bool* destination,
                                        const T* source) const {
  const unsigned int armed = PtxError::NoError;
  if (platform::cudaMemcpyToSymbolAsync(__QRD_PTX_ERROR_CODE, &armed, sizeof armed, 0, cudaMemcpyHostToDevice,
                                        stream) != cudaSuccess) {
    return;
  }
  elementwise::launchWithDeviceFunctor<CastToBoolKernel<T>>(stream, n, destination, source);
}

unsigned int CastToBool::getErrorFlag(CUstream_st* stream) const {
  unsigned int word;
  const bool copied = platform::cudaMemcpyFromSymbolAsync(&word, __QRD_PTX_ERROR_CODE, sizeof word, 0,
                                                          cudaMemcpyDeviceToHost, stream) == cudaSuccess;
  return copied && platform::cudaStreamSynchronize(stream) == cudaSuccess ? word : PtxError::WordNotReadable;
}

GPURUNTIME_INSTANTIATE_PAIRS(CastToReal, REAL_NUMERIC_TYPES, REAL_TYPES);
GPURUNTIME_INSTANTIATE_PAIRS(CastToComplex, COMPLEX_TYPES, ALL_TYPES);
GPURUNTIME_INSTANTIATE_PAIRS(CastBlockToReal, REAL_NUMERIC_TYPES, REAL_TYPES);
GPURUNTIME_INSTANTIATE_PAIRS(CastBlockToComplex, COMPLEX_TYPES, ALL_TYPES);
GPURUNTIME_INSTANTIATE(CastToBool, REAL_NUMERIC_TYPES);

}  // namespace gpuruntime
