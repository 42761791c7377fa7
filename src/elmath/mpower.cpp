#include <gpuruntime/elmath/mpower.hpp>
#include <gpuruntime/launcher/fixednumblocks.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"
#include "gpucommon/ptxmathcomplex.hpp"
#include "gpucommon/ptxmathunsafe.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::CUDATraits;
namespace scalarmath = gpucommon::scalarmath;

enum class ScalarOrder { scalarIsBase = 0, scalarIsExponent = 1 };

template <class T, ScalarOrder order>
GPURUNTIME_DEVICE T columnFactor(const T& eigenvalue, const T& s) {
  const T base = order == ScalarOrder::scalarIsBase ? s : eigenvalue;
  const T exponent = order == ScalarOrder::scalarIsBase ? eigenvalue : s;
  if constexpr (CUDATraits<T>::iscomplex) {
    return scalarmath::cdotexp(base, exponent);
  } else {
    return scalarmath::realPowerOrRaise(base, exponent);
  }
}

template <class T>
GPURUNTIME_DEVICE T timesFactor(const T& element, const T& factor) {
  if constexpr (CUDATraits<T>::iscomplex) {
    return scalarmath::ctimes(element, factor);
  } else {
    return element * factor;
  }
}

/// A block scales one column. Each thread takes the power for itself, which spares a barrier.
template <class T, ScalarOrder order, class Block>
GPURUNTIME_DEVICE void constColWithOpTmpl(const Block& block, unsigned long column, unsigned long n, T* output,
                                          const T* V, const T* d, T s) {
  const unsigned long blockSize = block.shape().x;
  const unsigned long steps = gpucommon::hostDeviceMath::ceiledIntegerDivision(n, blockSize);
  const T factor = columnFactor<T, order>(d[column], s);
  T* const to = output + column * n;
  const T* const from = V + column * n;
  for (unsigned long step = 0; step < steps; ++step) {
    const unsigned long first = step * blockSize;
    block.forEachThread(platform::Live{platform::Live::after(first, n)}, [=](platform::Thread thread) {
      const unsigned long row = first + thread.x;
      if (platform::isIdle(row >= n)) return;
      to[row] = timesFactor(from[row], factor);
    });
  }
}

template <class T, ScalarOrder order>
struct MPowerKernel : BlockFunctor<0> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::FixedNumBlocksIterator& it, T* output, const T* V,
                                      const T* d, T s) {
    if (it.block >= it.numBlocks) return;
    constColWithOpTmpl<T, order>(block, it.block, it.numBlocks, output, V, d, s);
  }
};

template <class T>
struct MPowerMatrixScalarKernel : MPowerKernel<T, ScalarOrder::scalarIsExponent> {};
template <class T>
struct MPowerScalarMatrixKernel : MPowerKernel<T, ScalarOrder::scalarIsBase> {};

}  // namespace

template <class T>
void MPowerMatrixScalar::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* V, const T* d, T s,
                                                unsigned long n) const {
  fixednumblocks::launchWithDeviceFunctor<MPowerMatrixScalarKernel<T>>(stream, n, output, V, d, s);
}

template <class T>
void MPowerScalarMatrix::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* V, const T* d, T s,
                                                unsigned long n) const {
  fixednumblocks::launchWithDeviceFunctor<MPowerScalarMatrixKernel<T>>(stream, n, output, V, d, s);
}

GPURUNTIME_INSTANTIATE(MPowerMatrixScalar, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(MPowerScalarMatrix, FLOAT_TYPES);

}  // namespace gpuruntime
