#include <gpuruntime/convolutions/conv.hpp>
#include <gpuruntime/launcher/fixed1dblock.hpp>

#include "convolutions/convolutioncommon.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime {
namespace conv {
namespace {

using namespace convolutioncommon;
using cuda::Fixed1DBlockIterator;
using gpucommon::hostDeviceMath::ceiledIntegerDivision;

GPURUNTIME_CONSTANT_SYMBOL(Filter, filter);

constexpr unsigned int blockSize = 128;

// Outputs of a thread, a block apart.
template <class T>
inline constexpr unsigned int perThread = std::is_same_v<T, float>    ? 16
                                          : std::is_same_v<T, float2> ? 8
                                                                      : 4;

// The largest halo of a type.
template <class T>
inline constexpr unsigned int longestHalo = std::is_same_v<T, double>   ? 80
                                            : std::is_same_v<T, float>  ? 144
                                            : std::is_same_v<T, float2> ? 48
                                                                        : 32;

/// A tile of `perThread` outputs for each thread. The members of a type share it: nothing in it depends on how many of
/// the taps are the member's own.
template <class T>
struct ConvolutionVectorKernel : BlockFunctor<blockSize> {
  static constexpr unsigned int P = perThread<T>;
  static constexpr unsigned int tile = blockSize * P;

  struct Shared {
    Tile<T, tile + longestHalo<T>> s_Data;
  };

  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed1DBlockIterator& it, T* out, const T* in,
                                      unsigned long filterStart, unsigned long outCount, unsigned long inCount,
                                      unsigned long taps, unsigned long inStart, unsigned long outStart,
                                      bool overwrite) {
    GPURUNTIME_SHARED(Shared, shared);
    const unsigned long tileStart = inStart + it.block * tile;
    // Elements before the tile that some tap reaches.
    const auto halo = static_cast<ThreadIndex>(taps - 1);
    load(block, shared.s_Data, in, inCount, tileStart, halo);
    block.sync();

    Sum<T, blockSize> sums[P];
    sumTaps<blockSize, 1>(block, reinterpret_cast<const T*>(filter.bytes), static_cast<ThreadIndex>(taps),
                          shared.s_Data, halo, sums, [](Thread thread) { return thread.x; });

    // Threads whose first position lies before the section write nothing.
    const unsigned long position = tileStart + filterStart;
    const unsigned long cut = Live::after(position, outStart), live = Live::after(position, outStart + outCount);
    const bool isWhole = cut == 0 && live >= tile;
    platform::OutputWindow<T, tile, P> window(out, cut == 0 ? position - outStart : 0, live,
                                              cut == 0 && overwrite ? outCount : 0);
    T* const to = window.pointer();
    const auto store = [&](auto value) {
      block.forEachThread([&](Thread thread) {
        const unsigned long element = position - outStart + thread.x;
        if (isWhole) {
          unrolled<P>([&](auto m) { value(to[element + blockSize * m], sums[m].get(thread)); });
        } else if (thread.x >= cut) {
          unrolled<P>([&](auto m) {
            if (thread.x + blockSize * m < live) value(to[element + blockSize * m], sums[m].get(thread));
          });
        }
      });
    };
    if (overwrite) {
      store([](T& output, const T& sum) { output = sum; });
    } else {
      store([](T& output, const T& sum) { output = plus(output, sum); });
    }
    window.flush(block);
  }

  // Fills the tile and the halo in front of it, with 0 outside of the input.
  template <class Data>
  static GPURUNTIME_DEVICE void load(const Block& block, Data& data, const T* in, unsigned long inCount,
                                     unsigned long tileStart, ThreadIndex halo) {
    const bool isInside = tileStart >= halo && tileStart + tile <= inCount;
    for (ThreadIndex first = 0; first < tile + halo; first += blockSize) {
      block.forEachThread(Live{tile + halo - first}, [&](Thread thread) {
        const ThreadIndex i = first + thread.x;
        if (platform::isIdle(i >= tile + halo)) return;
        const unsigned long at = tileStart - halo + i;  // Before the input it wraps.
        if (isInside) {
          data.set(i, in[at]);
        } else {
          data.set(i, at < inCount ? in[at] : T{});
        }
      });
    }
  }
};

}  // namespace
}  // namespace conv

template <class T, class N>
void ConvolutionVector::Invoker<T, N>::operator()(CUstream_st* stream, T* output, const T* input, const T* filter,
                                                  const conv::OffsetsAndSzs& pass) const {
  using namespace conv;
  const unsigned long taps = pass.extraTaps + N::value;
  if (platform::cudaMemcpyToSymbolAsync(conv::filter, filter + pass.filterStart, taps * sizeof(T), 0,
                                        cudaMemcpyDeviceToDevice, stream) != cudaSuccess) {
    return;
  }
  fixed1dblock::launchWithDeviceFunctor<ConvolutionVectorKernel<T>>(
      stream, ceiledIntegerDivision<unsigned long>(pass.outCount, perThread<T>), blockSize, output, input,
      pass.filterStart, pass.outCount, pass.inCount, taps, pass.inStart, pass.outStart, pass.overwrite);
}

#define GPURUNTIME_INSTANTIATE_PASS(A, T, N) template struct ConvolutionVector::Invoker<T, mpl_::int_<N>>;
GPURUNTIME_PASS_MEMBERS(GPURUNTIME_INSTANTIATE_PASS, )

}  // namespace gpuruntime
