#include <gpuruntime/elmath/abs.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathreal.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

template <class T>
GPURUNTIME_DEVICE RealOf<T> modulus(const T& value) {
  if constexpr (gpucommon::CUDATraits<T>::iscomplex) {
    return platform::hypot(value.x, value.y);
  } else {
    return std::abs(value);
  }
}

template <class T>
struct AbsKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, RealOf<T>* output, const T* input) {
    if (it.isOutside()) return;
    output[it.index] = modulus(input[it.index]);
  }
};

template <class T>
struct AbsPowerKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, RealOf<T>* output, const T* input,
                                      RealOf<T> p) {
    if (it.isOutside()) return;
    const RealOf<T> a = modulus(input[it.index]);
    // The commonest power is one product, whichever way the rule would take.
    output[it.index] = p == 2 ? a * a : gpucommon::scalarmath::realPower(a, p);
  }
};

// For a power that is no integer: no branch is left, and the cpu makes SIMD loops of it.
template <class T>
struct AbsFractionalPowerKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, RealOf<T>* output, const T* input,
                                      platform::Power<RealOf<T>> power) {
    if (it.isOutside()) return;
    output[it.index] = power(modulus(input[it.index]));
  }
};

}  // namespace

template <class T>
void Abs::Invoker<T>::operator()(CUstream_st* stream, RealOf<T>* output, const T* input, unsigned long n) const {
  elementwise::launchWithDeviceFunctor<AbsKernel<T>>(stream, n, output, input);
}

template <class T>
void AbsPower::Invoker<T>::operator()(CUstream_st* stream, RealOf<T>* output, const T* input, double p,
                                      unsigned long n) const {
  const auto power = static_cast<RealOf<T>>(p);
  if (gpucommon::scalarmath::isIntegerValued(power)) {
    elementwise::launchWithDeviceFunctor<AbsPowerKernel<T>>(stream, n, output, input, power);
  } else {
    elementwise::launchWithDeviceFunctor<AbsFractionalPowerKernel<T>>(stream, n, output, input,
                                                                      platform::Power<RealOf<T>>(power));
  }
}

GPURUNTIME_INSTANTIATE(Abs, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(AbsPower, FLOAT_TYPES);

}  // namespace gpuruntime
