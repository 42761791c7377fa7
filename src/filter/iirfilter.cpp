#include <gpuruntime/filter/iirfilter.hpp>
#include <gpuruntime/launcher/fixed2dblock.hpp>

#include <cmath>

#include "gpucommon/CUDATypes.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime {
namespace iirfilter {
namespace {

using platform::Live;
using platform::PerThread;
using platform::Thread;

constexpr unsigned int blockSize = 64;
// Samples that a thread takes at once.
constexpr unsigned int samplesPerStep = 8;

template <class T>
inline constexpr bool isComplex = gpucommon::CUDAIsComplex<T>::value;

/// p * q: of complex numbers the plain form, without a repair of NaNs.
template <class T>
GPURUNTIME_DEVICE T product(const T& p, const T& q) {
  if constexpr (isComplex<T>) {
    return T{p.x * q.x - p.y * q.y, std::fma(p.x, q.y, p.y * q.x)};
  } else {
    return p * q;
  }
}

/// p * q + c.
template <class T>
GPURUNTIME_DEVICE T productPlus(const T& p, const T& q, const T& c) {
  if constexpr (isComplex<T>) {
    const T pq = product(p, q);
    return T{pq.x + c.x, pq.y + c.y};
  } else {
    return std::fma(p, q, c);
  }
}

template <class T>
GPURUNTIME_DEVICE T plusZero(const T& z) {
  if constexpr (isComplex<T>) {
    return T{z.x + 0, z.y + 0};
  } else {
    return z + 0;
  }
}

template <class T>
GPURUNTIME_DEVICE T difference(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    return T{a.x - b.x, a.y - b.y};
  } else {
    return a - b;
  }
}

/// 1 / a; of a complex number by scaled division.
template <class T>
GPURUNTIME_DEVICE T inverse(const T& a) {
  if constexpr (isComplex<T>) {
    using R = RealOf<T>;
    const R r = 1 / (std::abs(a.x) + std::abs(a.y));
    const R ux = r, uy = 0 * r, vx = a.x * r, vy = a.y * r;
    const R q = 1 / (vx * vx + vy * vy);
    return T{(ux * vx + uy * vy) * q, (uy * vx - ux * vy) * q};
  } else {
    return 1 / a;
  }
}

/// Each thread has a column. Its samples pass through `values`, eight at a time, so that columns one after the other
/// are read and written by whole cache lines.
template <class T, unsigned int N>
struct IIRFilterKernel : BlockFunctor<blockSize> {
  struct Shared {
    T B[N + 1];
    T A[N + 1];
  };
  using Block = platform::Block<blockSize>;
  using States = PerThread<T, blockSize>[N];
  using Values = PerThread<T, blockSize>[samplesPerStep];

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed2DBlockIterator& it, T* y, T* zf, const T* b,
                                      const T* a, const T* x, const T* zi, unsigned int nb, unsigned int na,
                                      unsigned int length, unsigned int stride, bool sharedInitial) {
    const unsigned long column = it.blockX * blockSize, page = it.blockY;
    if (column >= it.sizeX || page >= it.sizeY) return;
    const Live live{it.sizeX - column};

    // All threads write the same, and read no more than they wrote: no barrier.
    GPURUNTIME_SHARED(Shared, shared);
    const T inv = inverse(a[0]);
    for (unsigned int i = 0; i <= N; ++i) {
      shared.B[i] = i < nb ? product(b[i], inv) : T{};
      shared.A[i] = i < na ? product(a[i], inv) : T{};
    }

    States states;
    const unsigned long firstState = (page * it.sizeX + column) * N;
    block.forEachThread(live, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live.x)) return;
      const T* const own = zi == nullptr || sharedInitial ? zi : zi + (firstState + thread.x * N);
      platform::unrolled<N>([&](auto j) { states[j][thread] = own == nullptr ? T{} : own[j]; });
    });

    const bool isContiguous = stride == 1;
    const unsigned long columnPitch = isContiguous ? length : 1;
    const unsigned long first = page * it.sizeX * length + column * columnPitch;
    const unsigned long size = it.sizeX * it.sizeY * length;
    const unsigned long threads = gpucommon::hostDeviceMath::minSizeT<unsigned long>(live.x, blockSize);
    const T* from = x + first;
    T* to = y + first;
    unsigned int t = 0;
    Values values;
    for (; t + samplesPerStep <= length; t += samplesPerStep) {
      if (isContiguous) {
        platform::loadRuns(block, live, values, from, columnPitch);
      } else {
        for (unsigned int k = 0; k < samplesPerStep; ++k) {
          platform::prefetchRunAhead(from + 1UL * (k + samplesPerStep) * stride, stride, threads);
        }
        block.forEachThread(live, [&](Thread thread) {
          if (platform::isIdle(thread.x >= live.x)) return;
          platform::unrolled<samplesPerStep>([&](auto k) { values[k][thread] = from[k * stride + thread.x]; });
        });
      }
      filter<samplesPerStep>(block, live, shared, states, values);
      if (isContiguous) {
        platform::storeRuns(block, live, values, to, columnPitch, size);
      } else {
        block.forEachThread(live, [&](Thread thread) {
          if (platform::isIdle(thread.x >= live.x)) return;
          platform::unrolled<samplesPerStep>([&](auto k) { to[k * stride + thread.x] = values[k][thread]; });
        });
      }
      from += 1UL * samplesPerStep * stride;
      to += 1UL * samplesPerStep * stride;
    }
    for (; t < length; ++t, from += stride, to += stride) {
      block.forEachThread(live, [&](Thread thread) {
        if (!platform::isIdle(thread.x >= live.x)) values[0][thread] = from[thread.x * columnPitch];
      });
      filter<1>(block, live, shared, states, values);
      block.forEachThread(live, [&](Thread thread) {
        if (!platform::isIdle(thread.x >= live.x)) to[thread.x * columnPitch] = values[0][thread];
      });
    }

    if (zf == nullptr) return;
    block.forEachThread(live, [&](Thread thread) {
      if (platform::isIdle(thread.x >= live.x)) return;
      platform::unrolled<N>([&](auto j) { zf[firstState + thread.x * N + j] = states[j][thread]; });
    });
  }

  /// Takes the first SAMPLES values of each thread as samples in order, and leaves what becomes of them in their place.
  template <unsigned int SAMPLES>
  static GPURUNTIME_DEVICE void filter(const Block& block, Live live, const Shared& shared, States& states,
                                       Values& values) {
    block.forEachThread(live, [&](Thread thread) {
      T z[N];
      platform::unrolled<N>([&](auto j) { z[j] = states[j][thread]; });
      platform::unrolled<SAMPLES>([&](auto k) {
        const T xt = values[k][thread];
        const T yt = productPlus(shared.B[0], xt, z[0]);
        platform::unrolled<N>([&](auto j) {
          T next{};
          if constexpr (j + 1 < N) next = plusZero(z[j + 1]);
          z[j] = difference(productPlus(shared.B[j + 1], xt, next), product(shared.A[j + 1], yt));
        });
        values[k][thread] = yt;
      });
      platform::unrolled<N>([&](auto j) { states[j][thread] = z[j]; });
    });
  }
};

}  // namespace
}  // namespace iirfilter

template <class T, class N>
void IIRFilter::Invoker<T, N>::operator()(CUstream_st* stream, T* y, T* zf, const T* b, const T* a, const T* x,
                                          const T* zi, unsigned int nb, unsigned int na, unsigned int length,
                                          unsigned int columns, unsigned int stride, unsigned int pages,
                                          unsigned int sharedInitial) const {
  fixed2dblock::launchWithDeviceFunctor<iirfilter::IIRFilterKernel<T, N::value>>(
      stream, columns, pages, iirfilter::blockSize, 1, y, zf, b, a, x, zi, nb, na, length, stride, sharedInitial != 0);
}

#define GPURUNTIME_INSTANTIATE_ORDER(T, N) template struct IIRFilter::Invoker<T, mpl_::integral_c<int, N>>;
#define GPURUNTIME_INSTANTIATE_ORDERS(A, T) \
  GPURUNTIME_INSTANTIATE_ORDER(T, 1)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 2)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 3)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 4)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 5)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 6)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 7)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 8)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 9)        \
  GPURUNTIME_INSTANTIATE_ORDER(T, 10)
GPURUNTIME_FLOAT_TYPES(GPURUNTIME_INSTANTIATE_ORDERS, )

}  // namespace gpuruntime
