/// @file
/// Elementwise launcher: one thread an element of a flat array.
#pragma once

#include <gpuruntime/launcher/elementwisefunctor.hpp>
#include <gpuruntime/launcher/launchrecords.hpp>

namespace gpuruntime {
namespace cuda {

/// Where a thread stands.
struct ElementwiseIterator {
  unsigned long index;  ///< Flat 0-based index of this thread's element.
  unsigned long count;  ///< Number of elements of the launch.

  /// The bound test, a functor's first act: true for the threads of the last blocks that have no element.
  GPURUNTIME_DEVICE bool isOutside() const { return platform::isIdle(index >= count); }
};

}  // namespace cuda

namespace elementwisedetail {

/// Blocks of min(256, the kernel's limit) threads, as many as `n` elements need.
GridAndBlock chooseElementwiseGridAndBlock(const platform::cudaFuncAttributes& attributes, unsigned long n);

template <class Functor, class... Args>
GPURUNTIME_DEVICE void applyInBlock(const platform::Block<>& block, unsigned int first, unsigned long n, Args... args) {
  const platform::Live live{platform::Live::after(first, n)};
  const auto iteratorOf = [=](platform::Thread thread) { return cuda::ElementwiseIterator{first + thread.x, n}; };
  if constexpr (launchdetail::takesThreadsItsWay<Functor>) {
    launchdetail::applyToThreads<Functor>(block, live, iteratorOf, args...);
  } else {
    block.forEachThread(live, [=](platform::Thread thread) { Functor::apply(iteratorOf(thread), args...); });
  }
}

template <class Functor, class T, class... Args>
GPURUNTIME_DEVICE void fillWindow(const platform::Block<>& block, unsigned int first, unsigned long n, T* out,
                                  Args... args) {
  platform::OutputWindow<T> window(out, first, platform::Live::after(first, n), n);
  applyInBlock<Functor>(block, first, n, window.pointer(), args...);
  window.flush(block);
}

template <class Functor, class... Args>
GPURUNTIME_DEVICE void reportFindings(const platform::Block<>& block, unsigned int first, unsigned long n,
                                      Args... args) {
  const platform::Live live{platform::Live::after(first, n)};
  const bool found = block.findsAny(live, [=](platform::Thread thread) {
    return Functor::finds(cuda::ElementwiseIterator{first + thread.x, n}, args...);
  });
  if (found) Functor::report(args...);
}

template <class Functor, class... Args>
struct SingleStep {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, unsigned long n, Args... args) {
    // In 32 bits, with wrap-around.
    const unsigned int first = launchdetail::flatBlockIndex(block) * block.shape().x;
    if constexpr (launchdetail::runsWholeBlocks<Functor>) {
      const unsigned long live = platform::Live::after(first, n);
      const auto covered = gpucommon::hostDeviceMath::minSizeT<unsigned long>(live, block.shape().x);
      Functor::applyToBlock(block, {first, 0, 0}, {covered, 1, 1}, args...);
    } else if constexpr (std::is_base_of_v<elementwise::WritesOwnElement, Functor>) {
      fillWindow<Functor>(block, first, n, args...);
    } else if constexpr (!std::is_base_of_v<elementwise::FindsInElement, Functor>) {
      applyInBlock<Functor>(block, first, n, args...);
    }
    if constexpr (std::is_base_of_v<elementwise::FindsInElement, Functor>) {
      reportFindings<Functor>(block, first, n, args...);
    }
  }
};

template <class Functor, class... Args>
platform::Kernel<unsigned long, Args...> singleStepKernel() {
  return platform::kernelOf<SingleStep<Functor, Args...>, unsigned long, Args...>();
}

}  // namespace elementwisedetail

namespace elementwise {

/// Runs `Functor::apply(it, args...)` for each of n elements on `stream`, and returns at once.
///
/// n = 0 makes no call of any kind. The functor's first act is its bound test: a launch has threads beyond the last
/// element. The flat index is 32 bits wide, so n is at most 2^32; that is not checked. Raises if the kernel's or the
/// device's limits can't be read; a refused launch stays silent.
template <class Functor, class... Args>
void launchWithDeviceFunctor(CUstream_st* stream, unsigned long n, Args... args) {
  if (n == 0) return;
  const auto kernel = elementwisedetail::singleStepKernel<Functor, Args...>();
  const GridAndBlock shape = elementwisedetail::chooseElementwiseGridAndBlock(launchdetail::attributesOf(kernel), n);
  launchdetail::start(kernel, shape, stream, n, args...);
}

}  // namespace elementwise
}  // namespace gpuruntime
