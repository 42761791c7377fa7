#include <gpuruntime/filter/diff.hpp>
#include <gpuruntime/launcher/fixed1dblock.hpp>

#include "gpucommon/CUDAOps.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::hostDeviceMath::minSizeT;

constexpr unsigned int blockSize = 256;

/// Output element i of group g stands at i + g * S of the input, and S further on, since the groups of the input have
/// one row more. Within a group both follow one another.
template <class T>
struct DiffKernel : BlockFunctor<blockSize> {
  // From this size of a group on a block goes from group to group.
  static constexpr unsigned long largeGroup = 64;

  static GPURUNTIME_DEVICE void apply(const platform::Block<blockSize>& block, const cuda::Fixed1DBlockIterator& it,
                                      T* output, const T* input, unsigned long S, unsigned long Lo) {
    const unsigned long first = it.thread, threads = minSizeT<unsigned long>(it.count - first, blockSize);
    const unsigned long groupSize = S * Lo;
    platform::OutputWindow<T> window(output, first, threads, it.count);
    T* const out = window.pointer();
    if (groupSize >= largeGroup) {
      unsigned long group = first / groupSize;
      for (unsigned long begin = 0; begin < threads; ++group) {
        const unsigned long end = minSizeT((group + 1) * groupSize - first, threads);
        T* const to = out + (first + begin);
        const T *const a = input + (first + begin + group * S), *const b = a + S;
        block.forEachThread(platform::Live{end - begin}, [=](platform::Thread thread) {
          if (platform::isIdle(thread.x >= end - begin)) return;
          to[thread.x] = gpucommon::CUDAOpsDetail::subtractImpl(b[thread.x], a[thread.x]);
        });
        begin = end;
      }
    } else {
      const double reciprocal = 1.0 / static_cast<double>(groupSize);
      block.forEachThread(platform::Live{threads}, [=](platform::Thread thread) {
        if (platform::isIdle(thread.x >= threads)) return;
        const unsigned long index = first + thread.x;
        const T* const a = input + (index + gpucommon::hostDeviceMath::quotient(index, reciprocal) * S);
        out[index] = gpucommon::CUDAOpsDetail::subtractImpl(a[S], a[0]);
      });
    }
    window.flush(block);
  }
};

}  // namespace

template <class T>
void Diff::Invoker<T>::operator()(CUstream_st* stream, T* output, const T* input, unsigned long S, unsigned long Lo,
                                  unsigned long n) const {
  fixed1dblock::launchWithDeviceFunctor<DiffKernel<T>>(stream, n, blockSize, output, input, S, Lo);
}

GPURUNTIME_INSTANTIATE(Diff, DIFF_TYPES);

}  // namespace gpuruntime
