#include <gpuruntime/elmath/diag.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

/// Where element i of diagonal k stands.
GPURUNTIME_DEVICE unsigned long computeMatrixElementIndex(unsigned long i, unsigned long numRows, long k) {
  const auto offset = static_cast<unsigned long>(k);
  return k < 1 ? i * (numRows + 1) - offset : (i + offset) * numRows + i;
}

// W is the storage of an element's width: types of one width share a kernel.
template <class W>
struct DiagMatToVecKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, W* vector, const W* matrix,
                                      unsigned long numRows, long k) {
    if (it.isOutside()) return;
    vector[it.index] = matrix[computeMatrixElementIndex(it.index, numRows, k)];
  }
};

template <class W>
struct DiagVecToMatKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, W* matrix, const W* vector,
                                      unsigned long numRows, long k) {
    if (it.isOutside()) return;
    matrix[computeMatrixElementIndex(it.index, numRows, k)] = vector[it.index];
  }
};

template <template <class> class Kernel, class T>
void moveDiagonal(CUstream_st* stream, T* output, const T* input, unsigned long numRows, long k, unsigned long n) {
  using W = gpucommon::StorageOf<T>;
  elementwise::launchWithDeviceFunctor<Kernel<W>>(stream, n, reinterpret_cast<W*>(output),
                                                  reinterpret_cast<const W*>(input), numRows, k);
}

}  // namespace

template <class T>
void DiagMatToVec::Invoker<T>::operator()(CUstream_st* stream, T* vector, const T* matrix, unsigned long numRows,
                                          long k, unsigned long n) const {
  moveDiagonal<DiagMatToVecKernel>(stream, vector, matrix, numRows, k, n);
}

template <class T>
void DiagVecToMat::Invoker<T>::operator()(CUstream_st* stream, T* matrix, const T* vector, unsigned long numRows,
                                          long k, unsigned long n) const {
  moveDiagonal<DiagVecToMatKernel>(stream, matrix, vector, numRows, k, n);
}

GPURUNTIME_INSTANTIATE(DiagMatToVec, ALL_TYPES);
GPURUNTIME_INSTANTIATE(DiagVecToMat, ALL_TYPES);

}  // namespace gpuruntime
