#include <gpuruntime/indexing/subsasgn.hpp>

#include "indexing/subscripts.hpp"

namespace gpuruntime {
namespace {

// An operand V is an array of T or one value for all.
template <class T>
GPURUNTIME_DEVICE T elementOf(const T* source, unsigned long i) {
  return source[i];
}
template <class T>
GPURUNTIME_DEVICE T elementOf(T value, unsigned long) {
  return value;
}

// T is what elements of a width are moved as: types of one width share a kernel.
template <class T, class V, class I1, class... I>
struct SubsasgnKernel : LooksUp<I1> {
  template <class Iterator>
  static GPURUNTIME_DEVICE unsigned long placeOf(const Iterator& it, const T*, V, const Subscript<I1>& first,
                                                 const Subscript<I>&... others) {
    return it.isOutside() ? 0 : placeIn(it, first, others...);
  }

  template <class Iterator, class... Subscripts>
  static GPURUNTIME_DEVICE void applyAt(unsigned long place, const Iterator& it, T* destination, V source,
                                        const Subscripts&...) {
    if (it.isOutside() || isRefused(place)) return;
    destination[place] = elementOf<T>(source, denseIndex(it));
  }

  template <class Iterator, class... Subscripts>
  static GPURUNTIME_DEVICE void apply(const Iterator& it, T* destination, V source, const Subscripts&... subscripts) {
    applyAt(placeOf(it, destination, source, subscripts...), it, destination, source);
  }
};

template <class T, class V, class I1>
using Subsasgn1DKernel = SubsasgnKernel<T, V, I1>;
template <class T, class V, class I1, class I2>
using Subsasgn2DKernel = SubsasgnKernel<T, V, I1, I2>;
template <class T, class V, class I1, class I2, class I3>
using Subsasgn3DKernel = SubsasgnKernel<T, V, I1, I2, I3>;

template <class T, class V, class I1, class I2, class I3>
void assign(CUstream_st* stream, unsigned long n, T* destination, V source, unsigned long extent1, unsigned long count1,
            I1 index1, unsigned long extent2, unsigned long count2, I2 index2, unsigned long extent3,
            unsigned long count3, I3 index3) {
  if (!armGuard(stream)) return;
  const auto first = subscript(index1, extent1);
  if constexpr (std::is_same_v<I2, void*>) {
    elementwise::launchWithDeviceFunctor<Subsasgn1DKernel<T, V, I1>>(stream, n, destination, source, first);
  } else if constexpr (std::is_same_v<I3, void*>) {
    elementwise2d::launchWithDeviceFunctor<Subsasgn2DKernel<T, V, I1, I2>>(stream, count1, count2, destination, source,
                                                                           first, subscript(index2, extent2));
  } else {
    elementwise3d::launchWithDeviceFunctor<Subsasgn3DKernel<T, V, I1, I2, I3>>(
        stream, count1, count2, count3, destination, source, first, subscript(index2, extent2),
        subscript(index3, extent3));
  }
}

}  // namespace

template <class I1, class I2, class I3>
template <class T>
void Subsasgn3D<I1, I2, I3>::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* destination,
                                                    const T* source, unsigned long extent1, unsigned long count1,
                                                    I1 index1, unsigned long extent2, unsigned long count2, I2 index2,
                                                    unsigned long extent3, unsigned long count3, I3 index3) const {
  using W = MovedAs<T>;
  assign(stream, n, reinterpret_cast<W*>(destination), reinterpret_cast<const W*>(source), extent1, count1, index1,
         extent2, count2, index2, extent3, count3, index3);
}

template <class I1, class I2, class I3>
template <class T>
void SubsasgnScalar3D<I1, I2, I3>::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* destination, T value,
                                                          unsigned long extent1, unsigned long count1, I1 index1,
                                                          unsigned long extent2, unsigned long count2, I2 index2,
                                                          unsigned long extent3, unsigned long count3,
                                                          I3 index3) const {
  using W = MovedAs<T>;
  assign(stream, n, reinterpret_cast<W*>(destination), static_cast<W>(gpucommon::bitsOf(value)), extent1, count1,
         index1, extent2, count2, index2, extent3, count3, index3);
}

unsigned int SubsasgnGuard::getErrorFlag(CUstream_st* stream) const {
  return readErrorWord(stream);
}

GPURUNTIME_INSTANTIATE_SUBSCRIPTED(Subsasgn3D);
GPURUNTIME_INSTANTIATE_SUBSCRIPTED(SubsasgnScalar3D);

}  // namespace gpuruntime
