#include <gpuruntime/reductions/cumsum.hpp>

#include "reductions/accumulationkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void CumSum::Invoker<T>::operator()(CUstream_st* stream, T* totals, T* data, unsigned long N, unsigned long L,
                                    unsigned long S) const {
  accumulationkernels::accumulate<reductionoperators::Sum<T>>(stream, totals, data, N, L, S);
}

template <class T>
void CumSumAdjust::Invoker<T>::operator()(CUstream_st* stream, T* adjustments, T* data, unsigned long N,
                                          unsigned long L, unsigned long K, unsigned long S) const {
  accumulationkernels::adjust<reductionoperators::Sum<T>>(stream, adjustments, data, N, L, K, S);
}

GPURUNTIME_INSTANTIATE(CumSum, ALL_TYPES);
GPURUNTIME_INSTANTIATE(CumSumAdjust, ALL_TYPES);

}  // namespace gpuruntime
