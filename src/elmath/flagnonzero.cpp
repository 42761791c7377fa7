#include <gpuruntime/elmath/flagnonzero.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

template <class F, class T>
struct FlagNonZeroKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, F* output, const T* input) {
    if (it.isOutside()) return;
    output[it.index] = gpucommon::CUDATraits<T>::isZero(input[it.index]) ? F(0) : F(1);
  }
};

template <class F, class T>
struct FlagRealNegativeKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, F* output, [[maybe_unused]] const T* input) {
    if (it.isOutside()) return;
    bool isNegative = false;
    if constexpr (std::is_signed_v<T>) isNegative = input[it.index] < 0;
    output[it.index] = isNegative ? F(1) : F(0);
  }
};

}  // namespace

template <class T>
void FlagNonZero::Invoker<T>::operator()(CUstream_st* stream, double* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<FlagNonZeroKernel<double, T>>(stream, n, output, input);
}

template <class T>
void FlagNegative::Invoker<T>::operator()(CUstream_st* stream, double* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<FlagRealNegativeKernel<double, T>>(stream, n, output, input);
}

GPURUNTIME_INSTANTIATE(FlagNonZero, ALL_TYPES);
GPURUNTIME_INSTANTIATE(FlagNegative, REAL_TYPES);

}  // namespace gpuruntime
