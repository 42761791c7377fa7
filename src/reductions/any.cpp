#include <gpuruntime/reductions/any.hpp>

#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "reductions/reductiontransforms.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void Any::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long N, unsigned long L,
                                 unsigned long S) const {
  reductionkernels::reduce<T, bool, reductiontransforms::IsNotZeroAndNotNaN<T>, reductionoperators::Or>(stream, output,
                                                                                                        input, N, L, S);
}

GPURUNTIME_INSTANTIATE(Any, ALL_TYPES);

}  // namespace gpuruntime
