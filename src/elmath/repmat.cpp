#include <gpuruntime/elmath/repmat.hpp>
#include <gpuruntime/launcher/elementwise2d.hpp>
#include <gpuruntime/launcher/elementwise3d.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// Blocks in squares repeat what they read while it is in the caches.
constexpr unsigned int side = 8;

// W is the storage of an element's width: types of one width share a kernel.
template <class W>
struct RepmatColumnVectorKernel : elementwise::WritesOwnElement {
  static constexpr unsigned int walkSide = side;

  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, W* output, const W* input) {
    if (it.isOutside()) return;
    output[it.y * it.sizeX + it.x] = input[it.x];
  }
};

template <class W>
struct RepmatRowVectorKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise3DIterator& it, W* output, const W* input) {
    if (it.isOutside()) return;
    output[(it.z * it.sizeY + it.y) * it.sizeX + it.x] = input[it.y];
  }
};

template <class W>
struct RepmatMatrixRowsKernel : elementwise::WritesOwnElement {
  static constexpr unsigned int walkSide = side;

  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise3DIterator& it, W* output, const W* input) {
    if (it.isOutside()) return;
    output[(it.sizeY * it.z + it.y) * it.sizeX + it.x] = input[it.sizeX * it.z + it.x];
  }
};

template <class T>
auto bits(T* elements) {
  return reinterpret_cast<gpucommon::StorageOf<T>*>(elements);
}
template <class T>
auto bits(const T* elements) {
  return reinterpret_cast<const gpucommon::StorageOf<T>*>(elements);
}

}  // namespace

template <class T>
void RepmatColumnVector::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long length,
                                                unsigned long repeats) const {
  elementwise2d::launchWithDeviceFunctor<RepmatColumnVectorKernel<gpucommon::StorageOf<T>>>(stream, length, repeats,
                                                                                            bits(output), bits(input));
}

template <class T>
void RepmatRowVector::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long length,
                                             unsigned long rows, unsigned long pages) const {
  elementwise3d::launchWithDeviceFunctor<RepmatRowVectorKernel<gpucommon::StorageOf<T>>>(stream, rows, length, pages,
                                                                                         bits(output), bits(input));
}

template <class T>
void RepmatMatrixRows::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long rows,
                                              unsigned long columns, unsigned long repeats) const {
  elementwise3d::launchWithDeviceFunctor<RepmatMatrixRowsKernel<gpucommon::StorageOf<T>>>(
      stream, rows, repeats, columns, bits(output), bits(input));
}

GPURUNTIME_INSTANTIATE(RepmatColumnVector, ALL_TYPES);
GPURUNTIME_INSTANTIATE(RepmatRowVector, ALL_TYPES);
GPURUNTIME_INSTANTIATE(RepmatMatrixRows, ALL_TYPES);

}  // namespace gpuruntime
