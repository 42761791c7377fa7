#include <gpuruntime/elmath/checkdataproperty.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::CUDATraits;

// 1 if the kernel of the last check found what it looked for.
GPURUNTIME_DEVICE_SYMBOL(unsigned int, dHasProperty);

template <class T>
struct CheckerNaN {
  static GPURUNTIME_DEVICE bool found(const T* data, unsigned long, unsigned long i) {
    return CUDATraits<T>::isNaN(data[i]);
  }
};

template <class T>
struct CheckerInf {
  static GPURUNTIME_DEVICE bool found(const T* data, unsigned long, unsigned long i) {
    return CUDATraits<T>::isInf(data[i]);
  }
};

template <class T>
struct CheckerNotFinite {
  static GPURUNTIME_DEVICE bool found(const T* data, unsigned long, unsigned long i) {
    return CUDATraits<T>::isNaN(data[i]) | CUDATraits<T>::isInf(data[i]);
  }
};

template <class T>
struct CheckerNotStronglySortedAscending {
  static GPURUNTIME_DEVICE bool found(const T* data, unsigned long n, unsigned long i) {
    return i + 1 < n && data[i] >= data[i + 1];
  }
};

template <class T, class Checker>
struct CheckDataPropertyKernel : elementwise::FindsInElement {
  static GPURUNTIME_DEVICE bool finds(const cuda::ElementwiseIterator& it, const T* data, unsigned long n) {
    return !it.isOutside() && Checker::found(data, n, it.index);
  }
  static GPURUNTIME_DEVICE void report(const T*, unsigned long) { platform::atomicOr(&dHasProperty, 1); }
};

template <class Checker, class T>
bool hasProperty(CUstream_st* stream, const T* data, const unsigned long& n) {
  unsigned int word = 0;
  if (platform::cudaMemcpyToSymbol(dHasProperty, &word, sizeof word) != cudaSuccess) return true;
  elementwise::launchWithDeviceFunctor<CheckDataPropertyKernel<T, Checker>>(stream, n, data, n);
  if (platform::cudaMemcpyFromSymbol(&word, dHasProperty, sizeof word) != cudaSuccess) return true;
  return word != 0;
}

}  // namespace

template <class T>
bool CheckNaN::Invoker<T>::operator()(CUstream_st* stream, const T* data, const unsigned long& n) const {
  return hasProperty<CheckerNaN<T>>(stream, data, n);
}

template <class T>
bool CheckInf::Invoker<T>::operator()(CUstream_st* stream, const T* data, const unsigned long& n) const {
  return hasProperty<CheckerInf<T>>(stream, data, n);
}

template <class T>
bool CheckNotFinite::Invoker<T>::operator()(CUstream_st* stream, const T* data, const unsigned long& n) const {
  return hasProperty<CheckerNotFinite<T>>(stream, data, n);
}

template <class T>
bool CheckNotStronglySortedAscending::Invoker<T>::operator()(CUstream_st* stream, const T* data,
                                                             const unsigned long& n) const {
  return hasProperty<CheckerNotStronglySortedAscending<T>>(stream, data, n);
}

GPURUNTIME_INSTANTIATE(CheckNaN, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(CheckInf, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(CheckNotFinite, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(CheckNotStronglySortedAscending, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
