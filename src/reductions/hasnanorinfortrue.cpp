#include <gpuruntime/reductions/hasnanorinfortrue.hpp>

#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "reductions/reductiontransforms.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void HasNaNOrInf::Invoker<T>::operator()(CUstream_st* stream, bool* output, const T* input, unsigned long N,
                                         unsigned long L) const {
  reductionkernels::reduceSegments<T, bool, reductiontransforms::IsNanOrInfTransform<T>, reductionoperators::Or>(
      stream, output, input, N, L);
}

GPURUNTIME_INSTANTIATE(HasNaNOrInf, FLOAT_TYPES);

}  // namespace gpuruntime
