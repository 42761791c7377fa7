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

/// A tile of `perThread` outputs for each thread. The members of a type share it: nothing in it depends on how many of
/// the taps are the member's own.
template <class T>
struct ConvolutionVectorKernel : BlockFunctor<blockSize> {
  static constexpr unsigned int P = perThread<T>;
  static constexpr unsigned int tile = blockSize * P;
  // A thread owns runs of A outputs, a block of threads apart.
  static constexpr unsigned int A = 4;
  static constexpr unsigned int pitch = pitchOf<T, A>(tile + longestHalo<T>);
  using Layout = RunLayout<A, pitch, 1>;

  struct Shared {
    Tile<T, A * pitch> s_Data;
  };

  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed1DBlockIterator& it, T* out, const T* in,
                                      unsigned long filterStart, unsigned long outCount, unsigned long inCount,
                                      unsigned long taps, unsigned long inStart, unsigned long outStart,
                                      bool overwrite) {
    GPURUNTIME_SHARED(Shared, shared);
    const unsigned long tileStart = inStart + it.block * tile;
    const ThreadIndex lead = Layout::lead(taps);
    load(block, shared.s_Data, in, inCount, tileStart, lead);
    platform::prefetchRunAhead(in + tileStart, tile, tile);
    block.sync();

    Sum<T, blockSize> sums[P];
    sumTaps<Layout, blockSize>(block, reinterpret_cast<const T*>(filter.bytes), taps, shared.s_Data, lead / A, sums,
                               [](Thread thread) { return thread.x; });
    block.sync();
    block.forEachThread([&](Thread thread) {
      unrolled<P>(
          [&](auto m) { shared.s_Data.set(thread.x + (m / A * blockSize + m % A * pitch), sums[m].get(thread)); });
    });
    block.sync();

    const Section section{out, outCount, tileStart + filterStart, outStart};
    if (overwrite) {
      store(block, shared.s_Data, section, outCount, [](T& output, const T& sum) { output = sum; });
    } else {
      store(block, shared.s_Data, section, 0, [](T& output, const T& sum) { output = plus(output, sum); });
    }
  }

  // Fills the tile and what leads to it, with 0 outside of the input.
  template <class Data>
  static GPURUNTIME_DEVICE void load(const Block& block, Data& data, const T* in, unsigned long inCount,
                                     unsigned long tileStart, ThreadIndex lead) {
    const bool isInside = tileStart >= lead && tileStart + tile <= inCount;
    for (ThreadIndex first = 0; first < tile + lead; first += blockSize * A) {
      const unsigned long from = tileStart - lead + first;  // Before the input it wraps.
      const auto loadBy = [&](auto element) {
        block.template forEachOfRuns<A>(tile + lead - first, [&](Thread, ThreadIndex column, auto k, ThreadIndex e) {
          data.set(k * pitch + first / A + column, element(from + e));
        });
      };
      if (isInside) {
        loadBy([&](unsigned long at) { return in[at]; });
      } else {
        loadBy([&](unsigned long at) { return at < inCount ? in[at] : T{}; });
      }
    }
  }

  /// Where the tile's outputs go.
  struct Section {
    T* out;
    unsigned long outCount;
    unsigned long position;  // Of the tile's first output in the full convolution.
    unsigned long outStart;
  };

  template <class Data, class Value>
  static GPURUNTIME_DEVICE void store(const Block& block, const Data& data, const Section& section,
                                      unsigned long streamedCount, Value value) {
    // Outputs lie in lines of one for each thread. If the first line begins before the section, the same part of all
    // lines is left out.
    const unsigned long cut = Live::after(section.position, section.outStart);
    const unsigned long live = Live::after(section.position, section.outStart + section.outCount);
    const unsigned long begin = section.position - section.outStart;
    platform::OutputWindow<T, tile, P> window(section.out, cut == 0 ? begin : 0, live, cut == 0 ? streamedCount : 0);
    T* const to = window.pointer();
    const auto storeIf = [&](auto isReached) {
      for (ThreadIndex first = 0; first < tile && first < live; first += blockSize * A) {
        block.template forEachOfRuns<A>(live - first, [&](Thread, ThreadIndex column, auto k, ThreadIndex e) {
          if (isReached(e)) value(to[begin + first + e], data.get(k * pitch + first / A + column));
        });
      }
    };
    if (cut == 0) {
      storeIf([](ThreadIndex) { return true; });
    } else {
      storeIf([=](ThreadIndex e) { return e % blockSize >= cut; });
    }
    window.flush(block);
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
