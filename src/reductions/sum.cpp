#include <gpuruntime/reductions/sum.hpp>

#include "reductions/reductionkernels.hpp"
#include "reductions/reductionoperators.hpp"
#include "reductions/reductiontransforms.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// The kernel of T = D is that of the native form.
template <class T>
using ToDouble = std::conditional_t<std::is_same_v<T, DoubleOf<T>>, reductiontransforms::NoOp<T>,
                                    reductiontransforms::Cast<T, DoubleOf<T>>>;

}  // namespace

template <class T>
void SumNative::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long N, unsigned long L,
                                       unsigned long S) const {
  reductionkernels::reduce<T, T, reductiontransforms::NoOp<T>, reductionoperators::Sum<T>>(stream, output, input, N, L,
                                                                                           S);
}

template <class T>
void SumAsDouble::Invoker<T>::operator()(CUstream_st* stream, DoubleOf<T>* output, const T* input, unsigned long N,
                                         unsigned long L, unsigned long S) const {
  reductionkernels::reduce<T, DoubleOf<T>, ToDouble<T>, reductionoperators::Sum<DoubleOf<T>>>(stream, output, input, N,
                                                                                              L, S);
}

GPURUNTIME_INSTANTIATE(SumNative, ALL_TYPES);
GPURUNTIME_INSTANTIATE(SumAsDouble, ALL_TYPES);

}  // namespace gpuruntime
