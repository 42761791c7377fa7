#include <gpuruntime/build/fillarraywithrunningindex.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/hostDeviceCommonArithmetic.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::hostDeviceMath::quotient;

template <class T>
struct FillArrayWithRunningIndexKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, unsigned long runLength,
                                      unsigned long numRuns) {
    if (it.isOutside()) return;
    const unsigned long period = runLength * numRuns;
    const unsigned long position = it.index - quotient(it.index, 1.0 / static_cast<double>(period)) * period;
    out[it.index] = static_cast<T>(quotient(position, 1.0 / static_cast<double>(runLength)) + 1);
  }
};

}  // namespace

template <class T>
void FillArrayWithRunningIndex::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out,
                                                       unsigned long runLength, unsigned long numRuns) const {
  elementwise::launchWithDeviceFunctor<FillArrayWithRunningIndexKernel<T>>(stream, n, out, runLength, numRuns);
}

GPURUNTIME_INSTANTIATE(FillArrayWithRunningIndex, DOUBLE_AND_INT_TYPES);

}  // namespace gpuruntime
