#include <gpuruntime/reductions/cumprod.hpp>

#include "reductions/accumulationkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void CumProd::Invoker<T>::operator()(CUstream_st* stream, T* totals, T* data, unsigned long N, unsigned long L,
                                     unsigned long S) const {
  accumulationkernels::accumulate<reductionoperators::Prod<T>>(stream, totals, data, N, L, S);
}

template <class T>
void CumProdAdjust::Invoker<T>::operator()(CUstream_st* stream, T* adjustments, T* data, unsigned long N,
                                           unsigned long L, unsigned long K, unsigned long S) const {
  accumulationkernels::adjust<reductionoperators::Prod<T>>(stream, adjustments, data, N, L, K, S);
}

GPURUNTIME_INSTANTIATE(CumProd, ALL_TYPES);
GPURUNTIME_INSTANTIATE(CumProdAdjust, ALL_TYPES);

}  // namespace gpuruntime
