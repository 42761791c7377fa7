#include <gpuruntime/build/fillarraywithrunningindex.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// index / divisor from the reciprocal of the divisor, exact for an index below 2^32: half a unit keeps the product
// further from the next integer than its two roundings reach.
GPURUNTIME_DEVICE unsigned long quotient(unsigned long index, double reciprocal) {
  return static_cast<unsigned long>((static_cast<double>(index) + 0.5) * reciprocal);
}

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
