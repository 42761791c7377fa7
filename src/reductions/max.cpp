#include <gpuruntime/reductions/max.hpp>

#include "reductions/indexedreductionkernels.hpp"
#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "reductions/reductiontransforms.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void Max::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long N, unsigned long L,
                                 unsigned long S) const {
  reductionkernels::reduce<T, T, reductiontransforms::Value<T>, reductionoperators::Max<T>>(stream, output, input, N, L,
                                                                                            S);
}

template <class T>
void MaxWithIndex::Invoker<T>::operator()(CUstream_st* stream, T* values, double* indices, const T* input,
                                          unsigned long N, unsigned long L, unsigned long K, unsigned long S) const {
  reductionkernels::reduceWithIndex<T, reductionoperators::Max<T>>(stream, values, indices, input, N, L, K, S);
}

GPURUNTIME_INSTANTIATE(Max, REAL_AND_COMPLEX_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(MaxWithIndex, REAL_AND_COMPLEX_FLOAT_TYPES);

}  // namespace gpuruntime
