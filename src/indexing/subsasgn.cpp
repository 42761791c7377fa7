#include <gpuruntime/indexing/subsasgn.hpp>

#include "gpucommon/CUDATypes.hpp"
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

// T is the storage of an element's width: types of one width share a kernel.
template <class T, class V, class I1>
struct Subsasgn1DKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* destination, V source,
                                      Subscript<I1> first) {
    if (it.isOutside()) return;
    const Place place = placeOf(it, first);
    if (isRefused(place)) return;
    destination[place.index] = elementOf<T>(source, denseIndex(it));
  }
};

template <class T, class V, class I1, class I2>
struct Subsasgn2DKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise2DIterator& it, T* destination, V source,
                                      Subscript<I1> first, Subscript<I2> second) {
    if (it.isOutside()) return;
    const Place place = placeOf(it, first, second);
    if (isRefused(place)) return;
    destination[place.index] = elementOf<T>(source, denseIndex(it));
  }
};

template <class T, class V, class I1, class I2, class I3>
struct Subsasgn3DKernel {
  static GPURUNTIME_DEVICE void apply(const cuda::Elementwise3DIterator& it, T* destination, V source,
                                      Subscript<I1> first, Subscript<I2> second, Subscript<I3> third) {
    if (it.isOutside()) return;
    const Place place = placeOf(it, first, second, third);
    if (isRefused(place)) return;
    destination[place.index] = elementOf<T>(source, denseIndex(it));
  }
};

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
  using W = gpucommon::StorageOf<T>;
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
  using W = gpucommon::StorageOf<T>;
  assign(stream, n, reinterpret_cast<W*>(destination), gpucommon::bitsOf(value), extent1, count1, index1, extent2,
         count2, index2, extent3, count3, index3);
}

unsigned int SubsasgnGuard::getErrorFlag(CUstream_st* stream) const {
  return readErrorWord(stream);
}

GPURUNTIME_INSTANTIATE_SUBSCRIPTED(Subsasgn3D);
GPURUNTIME_INSTANTIATE_SUBSCRIPTED(SubsasgnScalar3D);

}  // namespace gpuruntime
