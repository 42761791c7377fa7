#include <gpuruntime/reductions/hasnanortrue.hpp>

#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "reductions/reductiontransforms.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void HasNaN::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long N,
                                    unsigned long L) const {
  reductionkernels::reduceSegments<T, bool, reductiontransforms::IsNanTransform<T>, reductionoperators::Or>(
      stream, output, input, N, L);
}

GPURUNTIME_INSTANTIATE(HasNaN, FLOAT_TYPES);

}  // namespace gpuruntime
