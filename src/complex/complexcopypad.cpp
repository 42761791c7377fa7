#include <gpuruntime/complex/complexcopypad.hpp>
#include <gpuruntime/launcher/elementwise2d.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

template <class T>
struct CopyPad : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, ComplexOf<T>* out, unsigned long inRows,
                                      unsigned long inCols, const T* in) {
    if (it.isOutside()) return;
    ComplexOf<T> value{0, 0};
    if (it.x < inRows && it.y < inCols) {
      if constexpr (gpucommon::CUDAIsComplex<T>::value) {
        value = in[it.y * inRows + it.x];
      } else {
        value.x = in[it.y * inRows + it.x];
      }
    }
    out[it.y * it.sizeX + it.x] = value;
  }
};

}  // namespace

template <class T>
void ComplexCopyPad::Invoker<T>::operator()(CUstream_st* stream, ComplexOf<T>* out, unsigned long outRows,
                                            unsigned long outCols, const T* in, unsigned long inRows,
                                            unsigned long inCols) const {
  elementwise2d::launchWithDeviceFunctor<CopyPad<T>>(stream, outRows, outCols, out, inRows, inCols, in);
}

GPURUNTIME_INSTANTIATE(ComplexCopyPad, FLOAT_TYPES);

}  // namespace gpuruntime
