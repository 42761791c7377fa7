#include <gpuruntime/reductions/prod.hpp>

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
void ProdNative::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long N,
                                        unsigned long L, unsigned long S) const {
  reductionkernels::reduce<T, T, reductiontransforms::NoOp<T>, reductionoperators::Prod<T>>(stream, output, input, N, L,
                                                                                            S);
}

template <class T>
void ProdAsDouble::Invoker<T>::operator()(CUstream_st* stream, DoubleOf<T>* output, const T* input, unsigned long N,
                                          unsigned long L, unsigned long S) const {
  reductionkernels::reduce<T, DoubleOf<T>, ToDouble<T>, reductionoperators::Prod<DoubleOf<T>>>(stream, output, input, N,
                                                                                               L, S);
}

GPURUNTIME_INSTANTIATE(ProdNative, ALL_TYPES);
GPURUNTIME_INSTANTIATE(ProdAsDouble, ALL_TYPES);

}  // namespace gpuruntime
