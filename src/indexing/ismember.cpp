#include <gpuruntime/indexing/ismember.hpp>
#include <gpuruntime/launcher/fixed1dblock.hpp>

#include <cmath>
#include <limits>

#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

constexpr unsigned int blockSize = 256;

/// The value that x has in type T, as a double, which holds the values of all these types. NaN stays NaN, which lets
/// every comparison with it fail.
template <class T>
GPURUNTIME_DEVICE double inTypeOf(double x) {
  if constexpr (std::is_same_v<T, bool>) {
    return x == x ? static_cast<double>(x != 0) : x;
  } else if constexpr (std::is_integral_v<T>) {
    constexpr double lowest = std::numeric_limits<T>::min(), highest = std::numeric_limits<T>::max();
    const double whole = std::trunc(x);
    const double notTooHigh = whole > highest ? highest : whole;
    return notTooHigh < lowest ? lowest : notTooHigh;
  } else {
    return static_cast<T>(x);
  }
}

template <class T>
GPURUNTIME_DEVICE double valueOf(const T& x) {
  if constexpr (std::is_same_v<T, bool>) {
    return gpucommon::bitsOf(x) != 0;
  } else {
    return x;
  }
}

/// All threads of a block search at the same time: each step reads one element of B for each of them, at places that do
/// not depend on each other. NaNs of B, behind all numbers, are less than nothing, so they need not be counted.
template <class T>
struct FindLocBKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockIterator& it, const T* A,
                                      unsigned long nB, const double* B, const double* indexB, bool* member,
                                      double* location) {
    const unsigned long threads = it.count - it.thread;
    const platform::Live live{threads};
    A += it.thread;
    member += it.thread;

    // The first position whose element is not less than A lies in [first, first + remaining), if there is one.
    platform::PerThread<double, blockSize> wanted;
    platform::PerThread<unsigned long, blockSize> first;
    block.forEachThread(live, [&](platform::Thread thread) {
      wanted[thread] = platform::isIdle(thread.x >= threads) ? 0.0 : valueOf(A[thread.x]);
      first[thread] = 0;
    });
    for (unsigned long remaining = nB; remaining > 1;) {
      const unsigned long half = remaining / 2;
      block.forEachThread(live, [&](platform::Thread thread) {
        first[thread] += inTypeOf<T>(B[first[thread] + half - 1]) < wanted[thread] ? half : 0;
      });
      remaining -= half;
    }

    if (nB == 0) {
      block.forEachThread(live, [&](platform::Thread thread) {
        if (platform::isIdle(thread.x >= threads)) return;
        member[thread.x] = false;
        if (location != nullptr) location[it.thread + thread.x] = 0;
      });
      return;
    }
    block.forEachThread(live, [&](platform::Thread thread) {
      if (!platform::isIdle(thread.x >= threads)) member[thread.x] = inTypeOf<T>(B[first[thread]]) == wanted[thread];
    });
    if (location == nullptr) return;
    location += it.thread;
    block.forEachThread(live, [&](platform::Thread thread) {
      const double index = indexB[first[thread]];
      const bool found = inTypeOf<T>(B[first[thread]]) == wanted[thread];
      if (!platform::isIdle(thread.x >= threads)) location[thread.x] = found ? index : 0;
    });
  }
};

template <class T>
void search(CUstream_st* stream, const T* A, unsigned long nA, const double* B, unsigned long nB, const double* indexB,
            bool* member, double* location) {
  fixed1dblock::launchWithDeviceFunctor<FindLocBKernel<T>>(stream, nA, blockSize, A, nB, B, indexB, member, location);
}

}  // namespace

template <class T>
void IsMember1Arg::Invoker<T>::operator()(const T* A, unsigned long nA, const double* B, unsigned long nB,
                                          bool* member) const {
  search<T>(nullptr, A, nA, B, nB, nullptr, member, nullptr);
}

template <class T>
void IsMember2Arg::Invoker<T>::operator()(CUstream_st* stream, const T* A, unsigned long nA, const double* B,
                                          unsigned long nB, const double* indexB, bool* member,
                                          double* location) const {
  search<T>(stream, A, nA, B, nB, indexB, member, location);
}

GPURUNTIME_INSTANTIATE(IsMember1Arg, MEMBER_TYPES);
GPURUNTIME_INSTANTIATE(IsMember2Arg, MEMBER_TYPES);

}  // namespace gpuruntime
