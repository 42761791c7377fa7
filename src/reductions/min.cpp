#include <gpuruntime/reductions/min.hpp>

#include "reductions/indexedreductionkernels.hpp"
#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "reductions/reductiontransforms.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void Min::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long N, unsigned long L,
                                 unsigned long S) const {
  reductionkernels::reduce<T, T, reductiontransforms::Value<T>, reductionoperators::Min<T>>(stream, output, input, N, L,
                                                                                            S);
}

template <class T>
void MinWithIndex::Invoker<T>::operator()(CUstream_st* stream, T* values, double* indices, const T* input,
                                          unsigned long N, unsigned long L, unsigned long K, unsigned long S) const {
  reductionkernels::reduceWithIndex<T, reductionoperators::Min<T>>(stream, values, indices, input, N, L, K, S);
}

GPURUNTIME_INSTANTIATE(Min, REAL_AND_COMPLEX_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(MinWithIndex, REAL_AND_COMPLEX_FLOAT_TYPES);

}  // namespace gpuruntime
