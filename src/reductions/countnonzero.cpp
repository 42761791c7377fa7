#include <gpuruntime/reductions/countnonzero.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// 1 for an element that is not 0.
template <class D, class T>
struct FlagNonZeroTransform {
  static GPURUNTIME_DEVICE D apply(const T& value) { return gpucommon::CUDATraits<T>::isZero(value) ? D(0) : D(1); }
};

}  // namespace

template <class T>
void CountNonZero::Invoker<T>::operator()(CUstream_st* stream, double* output, const T* input, unsigned long N,
                                          unsigned long L) const {
  reductionkernels::reduceSegments<T, double, FlagNonZeroTransform<double, T>, reductionoperators::Sum<double>>(
      stream, output, input, N, L);
}

GPURUNTIME_INSTANTIATE(CountNonZero, ALL_TYPES);

}  // namespace gpuruntime
