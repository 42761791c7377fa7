#include <gpuruntime/interp/checkInfNaNAndStrongSortKernel.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// The two flags of the last check.
GPURUNTIME_DEVICE_SYMBOL(unsigned int, dHasInfNaNOrNotStrictlyIncreasing);
constexpr unsigned int hasInfNaN = 0x10000, isNotStrictlyIncreasing = 1;

template <class T>
GPURUNTIME_DEVICE bool isInfNaN(const T* data, unsigned long i) {
  return gpucommon::CUDATraits<T>::isNaN(data[i]) | gpucommon::CUDATraits<T>::isInf(data[i]);
}
template <class T>
GPURUNTIME_DEVICE bool isNotBelowNext(const T* data, unsigned long i, unsigned long n) {
  return i + 1 < n && data[i] >= data[i + 1];
}

template <class T>
struct CheckKernel : elementwise::RunsWholeBlocks {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, const T* data, unsigned long n) {
    if (it.isOutside()) return;
    report(isInfNaN(data, it.index), isNotBelowNext(data, it.index, n));
  }

  template <class Block>
  static GPURUNTIME_DEVICE void applyToBlock(const Block& block, launchdetail::Distances first,
                                             launchdetail::Distances live, const T* data, unsigned long n) {
    const platform::Live threads{live.x};
    report(
        block.findsAny(threads, [=](platform::Thread thread) { return isInfNaN(data, first.x + thread.x); }),
        block.findsAny(threads, [=](platform::Thread thread) { return isNotBelowNext(data, first.x + thread.x, n); }));
  }

 private:
  static GPURUNTIME_DEVICE void report(bool infNaN, bool notBelowNext) {
    const unsigned int flags = (infNaN ? hasInfNaN : 0) | (notBelowNext ? isNotStrictlyIncreasing : 0);
    if (flags != 0) platform::atomicOr(&dHasInfNaNOrNotStrictlyIncreasing, flags);
  }
};

}  // namespace

template <class T>
std::pair<bool, bool> CheckInfNaNAndStrictlyIncreasing::Invoker<T>::operator()(CUstream_st* stream, const T* data,
                                                                               const unsigned long& n) const {
  unsigned int word = 0;
  if (platform::cudaMemcpyToSymbol(dHasInfNaNOrNotStrictlyIncreasing, &word, sizeof word) != cudaSuccess) {
    return {true, true};
  }
  elementwise::launchWithDeviceFunctor<CheckKernel<T>>(stream, n, data, n);
  if (platform::cudaMemcpyFromSymbol(&word, dHasInfNaNOrNotStrictlyIncreasing, sizeof word) != cudaSuccess) {
    return {true, true};
  }
  return {word >= hasInfNaN, word % hasInfNaN != 0};
}

GPURUNTIME_INSTANTIATE(CheckInfNaNAndStrictlyIncreasing, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
