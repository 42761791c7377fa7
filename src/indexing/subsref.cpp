#include <gpuruntime/indexing/subsref.hpp>

#include "gpucommon/CUDATypes.hpp"
#include "indexing/subscripts.hpp"

namespace gpuruntime {
namespace {

// W is the storage of an element's width: types of one width share a kernel.
template <class W, class I1>
struct Subsref1DKernel : WritesUnlessRefused {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, W* output, const W* input,
                                      Subscript<I1> first) {
    if (it.isOutside()) return;
    const Place place = placeOf(it, first);
    if (isRefused(place)) return;
    output[denseIndex(it)] = input[place.index];
  }
};

template <class W, class I1, class I2>
struct Subsref2DKernel : WritesUnlessRefused {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, W* output, const W* input,
                                      Subscript<I1> first, Subscript<I2> second) {
    if (it.isOutside()) return;
    const Place place = placeOf(it, first, second);
    if (isRefused(place)) return;
    output[denseIndex(it)] = input[place.index];
  }
};

template <class W, class I1, class I2, class I3>
struct Subsref3DKernel : WritesUnlessRefused {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise3DIterator& it, W* output, const W* input,
                                      Subscript<I1> first, Subscript<I2> second, Subscript<I3> third) {
    if (it.isOutside()) return;
    const Place place = placeOf(it, first, second, third);
    if (isRefused(place)) return;
    output[denseIndex(it)] = input[place.index];
  }
};

}  // namespace

template <class I1, class I2, class I3>
template <class T>
void Subsref3D<I1, I2, I3>::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* output, const T* input,
                                                   unsigned long extent1, unsigned long count1, I1 index1,
                                                   unsigned long extent2, unsigned long count2, I2 index2,
                                                   unsigned long extent3, unsigned long count3, I3 index3) const {
  if (!armGuard(stream)) return;
  using W = gpucommon::StorageOf<T>;
  auto* const to = reinterpret_cast<W*>(output);
  const auto* const from = reinterpret_cast<const W*>(input);
  const auto first = subscript(index1, extent1);
  if constexpr (std::is_same_v<I2, void*>) {
    elementwise::launchWithDeviceFunctor<Subsref1DKernel<W, I1>>(stream, n, to, from, first);
  } else if constexpr (std::is_same_v<I3, void*>) {
    elementwise2d::launchWithDeviceFunctor<Subsref2DKernel<W, I1, I2>>(stream, count1, count2, to, from, first,
                                                                       subscript(index2, extent2));
  } else {
    elementwise3d::launchWithDeviceFunctor<Subsref3DKernel<W, I1, I2, I3>>(
        stream, count1, count2, count3, to, from, first, subscript(index2, extent2), subscript(index3, extent3));
  }
}

unsigned int SubsrefGuard::getErrorFlag(CUstream_st* stream) const {
  return readErrorWord(stream);
}

GPURUNTIME_INSTANTIATE_SUBSCRIPTED(Subsref3D);

}  // namespace gpuruntime
