#include <gpuruntime/elmath/triltriu.hpp>
#include <gpuruntime/launcher/elementwise2d.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::bitsOf;
using gpucommon::StorageOf;
using gpucommon::CUDATraitsDetail::getOneImpl;

// W is the storage of an element's width: types of one width share a kernel. The zero of every type is W{}. Output and
// input may be one array.
template <class W, bool UPPER>
struct TrilTriU : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, W* output, const W* input, long k) {
    if (it.isOutside()) return;
    const long x = static_cast<long>(it.x), d = static_cast<long>(it.y) - k;
    const unsigned long p = it.sizeX * it.y + it.x;
    W value{};
    if (UPPER ? x <= d : x >= d) value = input[p];
    output[p] = value;
  }
};

template <class W>
struct TrilOneDiag : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, W* output, const W* input, long k, W one) {
    if (it.isOutside()) return;
    const long x = static_cast<long>(it.x), d = static_cast<long>(it.y) - k;
    const unsigned long p = it.sizeX * it.y + it.x;
    W value{};
    if (x == d) value = one;
    if (x > d) value = input[p];
    output[p] = value;
  }
};

template <class Functor, class T, class... Constants>
void triangle(CUstream_st* stream, T* output, const T* input, long k, unsigned long numRows, unsigned long numCols,
              Constants... constants) {
  using W = StorageOf<T>;
  elementwise2d::launchWithDeviceFunctor<Functor>(stream, numRows, numCols, reinterpret_cast<W*>(output),
                                                  reinterpret_cast<const W*>(input), k, constants...);
}

}  // namespace

template <class T>
void TriLower::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, long k, unsigned long numRows,
                                      unsigned long numCols) const {
  triangle<TrilTriU<StorageOf<T>, false>>(stream, output, input, k, numRows, numCols);
}

template <class T>
void TriUpper::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, long k, unsigned long numRows,
                                      unsigned long numCols) const {
  triangle<TrilTriU<StorageOf<T>, true>>(stream, output, input, k, numRows, numCols);
}

template <class T>
void TriLowerOneOnDiag::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, long k,
                                               unsigned long numRows, unsigned long numCols) const {
  triangle<TrilOneDiag<StorageOf<T>>>(stream, output, input, k, numRows, numCols, bitsOf(getOneImpl<T>()));
}

GPURUNTIME_INSTANTIATE(TriLower, ALL_TYPES);
GPURUNTIME_INSTANTIATE(TriLowerOneOnDiag, ALL_TYPES);
GPURUNTIME_INSTANTIATE(TriUpper, ALL_TYPES);

}  // namespace gpuruntime
