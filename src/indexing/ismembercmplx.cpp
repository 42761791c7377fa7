#include <gpuruntime/indexing/ismembercmplx.hpp>
#include <gpuruntime/launcher/fixed1dblock.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "platform/thrust.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

constexpr unsigned int blockSize = 256;

/// What parts are sorted and searched by: integers that ascend as numbers do, the same for both zeros. That of NaN, of
/// either sign, is 0 and stands in front of all others.
using Key = unsigned long long;

GPURUNTIME_HOST_DEVICE Key keyOf(double part) {
  constexpr Key sign = 1ULL << 63;
  const Key bits = gpucommon::bitsOf(part);
  const Key number = part == 0 ? sign : ((bits & sign) != 0 ? ~bits : bits | sign);
  return part != part ? 0 : number;
}

struct KeyOfImaginaryPart {
  GPURUNTIME_HOST_DEVICE Key operator()(const double2& z) const { return keyOf(z.y); }
};

struct KeyOfRealPartAt {
  const double2* array;

  GPURUNTIME_HOST_DEVICE Key operator()(const unsigned long& position) const { return keyOf(array[position].x); }
};

/// Searches B, whose keys are sorted by real and then by imaginary part. `position` is where each stood in B.
struct SearchKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockIterator& it, const double2* A,
                                      unsigned long nB, const Key* realB, const Key* imaginaryB,
                                      const unsigned long* position, bool* member, double* location) {
    const unsigned long threads = it.count - it.thread;
    const platform::Live live{threads};
    A += it.thread;

    // All threads search at the same time. The first position whose element is not less than A lies in [first, first +
    // remaining), if there is one.
    platform::PerThread<Key, blockSize> wantedReal, wantedImaginary;
    platform::PerThread<unsigned long, blockSize> first;
    block.forEachThread(live, [&](platform::Thread thread) {
      const double2 wanted = platform::isIdle(thread.x >= threads) ? double2{0, 0} : A[thread.x];
      wantedReal[thread] = keyOf(wanted.x);
      wantedImaginary[thread] = keyOf(wanted.y);
      first[thread] = 0;
    });
    const auto isLess = [&](platform::Thread thread, unsigned long at) {
      const Key real = realB[at], imaginary = imaginaryB[at];
      return (real < wantedReal[thread]) | ((real == wantedReal[thread]) & (imaginary < wantedImaginary[thread]));
    };
    for (unsigned long remaining = nB; remaining > 1;) {
      const unsigned long half = remaining / 2;
      block.forEachThread(
          live, [&](platform::Thread thread) { first[thread] += isLess(thread, first[thread] + half - 1) ? half : 0; });
      remaining -= half;
    }

    block.forEachThread(live, [&](platform::Thread thread) {
      if (platform::isIdle(thread.x >= threads)) return;
      bool found = false;
      double place = 0;
      if (nB > 0 && wantedReal[thread] != 0 && wantedImaginary[thread] != 0) {
        const unsigned long at = first[thread];
        found = realB[at] == wantedReal[thread] && imaginaryB[at] == wantedImaginary[thread];
        if (found) place = static_cast<double>(position[at] + 1);
      }
      member[it.thread + thread.x] = found;
      if (location != nullptr) location[it.thread + thread.x] = place;
    });
  }
};

/// The body of both families; `location` is null where it is not wanted.
void doIsMember(CUstream_st* stream, const double2* A, unsigned long nA, const double2* B, unsigned long nB,
                bool* member, double* location) {
  if (nA == 0) return;
  const platform::Temporary<Key> realMemory(nB), imaginaryMemory(nB);
  const platform::Temporary<unsigned long> positionMemory(nB);
  Key *const realB = realMemory.data(), *const imaginaryB = imaginaryMemory.data();
  unsigned long* const position = positionMemory.data();

  // By imaginary parts, then by real parts. Both sorts are stable, so that of equal elements the first of B comes
  // first.
  const auto policy = thrust::device;
  thrust::sequence(policy, position, position + nB);
  thrust::transform(policy, B, B + nB, imaginaryB, KeyOfImaginaryPart());
  thrust::stable_sort_by_key(policy, imaginaryB, imaginaryB + nB, position);
  thrust::transform(policy, position, position + nB, realB, KeyOfRealPartAt{B});
  thrust::stable_sort_by_key(policy, realB, realB + nB,
                             thrust::make_zip_iterator(thrust::make_tuple(imaginaryB, position)));

  fixed1dblock::launchWithDeviceFunctor<SearchKernel>(stream, nA, blockSize, A, nB, static_cast<const Key*>(realB),
                                                      static_cast<const Key*>(imaginaryB),
                                                      static_cast<const unsigned long*>(position), member, location);
}

}  // namespace

template <class T>
void IsMember1ArgCmplx::Invoker<T>::operator()(CUstream_st* stream, const double2* A, unsigned long nA,
                                               const double2* B, unsigned long nB, bool* member) const {
  doIsMember(stream, A, nA, B, nB, member, nullptr);
}

template <class T>
void IsMember2ArgCmplx::Invoker<T>::operator()(CUstream_st* stream, const double2* A, unsigned long nA,
                                               const double2* B, unsigned long nB, bool* member,
                                               double* location) const {
  doIsMember(stream, A, nA, B, nB, member, location);
}

GPURUNTIME_INSTANTIATE(IsMember1ArgCmplx, COMPLEX_MEMBER_TYPES);
GPURUNTIME_INSTANTIATE(IsMember2ArgCmplx, COMPLEX_MEMBER_TYPES);

}  // namespace gpuruntime
