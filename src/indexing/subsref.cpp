#include <gpuruntime/indexing/subsref.hpp>

#include "indexing/subscripts.hpp"

namespace gpuruntime {
namespace {

// W is what elements of a width are moved as: types of one width share a kernel.
template <class W, class I1, class... I>
struct SubsrefKernel : WritesUnlessRefused, LooksUp<I1> {
  template <class Iterator>
  static GPURUNTIME_DEVICE unsigned long placeOf(const Iterator& it, const W*, const W*, const Subscript<I1>& first,
                                                 const Subscript<I>&... others) {
    return it.isOutside() ? 0 : placeIn(it, first, others...);
  }

  template <class Iterator, class... Subscripts>
  static GPURUNTIME_DEVICE void applyAt(unsigned long place, const Iterator& it, W* output, const W* input,
                                        const Subscripts&...) {
    if (it.isOutside() || isRefused(place)) return;
    output[denseIndex(it)] = input[place];
  }

  template <class Iterator, class... Subscripts>
  static GPURUNTIME_DEVICE void apply(const Iterator& it, W* output, const W* input, const Subscripts&... subscripts) {
    applyAt(placeOf(it, output, input, subscripts...), it, output, input);
  }
};

template <class T, class I1>
using Subsref1DKernel = SubsrefKernel<T, I1>;
template <class T, class I1, class I2>
using Subsref2DKernel = SubsrefKernel<T, I1, I2>;
template <class T, class I1, class I2, class I3>
using Subsref3DKernel = SubsrefKernel<T, I1, I2, I3>;

}  // namespace

template <class I1, class I2, class I3>
template <class T>
void Subsref3D<I1, I2, I3>::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* output, const T* input,
                                                   unsigned long extent1, unsigned long count1, I1 index1,
                                                   unsigned long extent2, unsigned long count2, I2 index2,
                                                   unsigned long extent3, unsigned long count3, I3 index3) const {
  if (!armGuard(stream)) return;
  using W = MovedAs<T>;
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
