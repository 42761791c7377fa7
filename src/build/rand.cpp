#include <gpuruntime/build/rand.hpp>
#include <gpuruntime/launcher/fixed1dblock.hpp>
#include <gpuruntime/util/device.hpp>

#include "gpucommon/hostDeviceCommonArithmetic.hpp"
#include "gpucommon/randConversions.hpp"
#include "gpucommon/randMRG32K3AImpl.hpp"
#include "gpucommon/randPhilox4x32Impl.hpp"
#include "gpucommon/randThreeFry4x64Impl.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

using gpucommon::rand::MRG32K3AGenerator;
using gpucommon::rand::Philox4x32Generator;
using gpucommon::rand::ThreeFry4x64Generator;

namespace rand {
namespace {

using cuda::Fixed1DBlockIterator;
using gpucommon::hostDeviceMath::ceiledIntegerDivision;
using gpucommon::hostDeviceMath::roundIntegerUpToMultipleOf;
using platform::Live;
using platform::PerThread;
using platform::Thread;
using platform::unrolled;

constexpr unsigned int blockSize = 64;

// Samples that a thread makes, of the counter-based generators in all, of MRG32k3a at a time.
constexpr unsigned int samplesAtATime = 8;

/// How the threads of a launch share out the samples.
enum GridOptimizationType {
  coalescedWrites = 0,     ///< A block makes a run of the stream together; threads are as many as n needs.
  consecutiveSamples = 1,  ///< A thread makes a run of the stream; threads are as many as the device runs.
};

template <class G>
struct LaunchPolicy {
  static constexpr GridOptimizationType GridOptimization = coalescedWrites;
};
template <>
struct LaunchPolicy<MRG32K3AGenerator> {
  static constexpr GridOptimizationType GridOptimization = consecutiveSamples;
};

// Room for the state of any generator. One launch at a time reads it.
struct State {
  unsigned int words[ThreeFry4x64Generator::stateWords];
};
GPURUNTIME_CONSTANT_SYMBOL(State, RNGInitialState);

// A stream may begin within a generator block of at most four samples.
template <class T>
struct SharedTile {
  T sharedMem[blockSize * samplesAtATime + 4];
};

/// Calls store(thread, values) with what the conversion makes of the S samples that makeSamples(use) gives to
/// use(thread, samples), for all live threads.
template <unsigned int S, class Conversion, class MakeSamples, class Store>
GPURUNTIME_DEVICE void convertEach(const platform::Block<blockSize>&, Live, const Conversion& conversion,
                                   MakeSamples makeSamples, Store store) {
  makeSamples([&](Thread thread, double(&samples)[S]) {
    conversion(samples);
    store(thread, samples);
  });
}

// The inverse has a branch, which the platform takes for a whole block at once.
template <unsigned int S, class T, class MakeSamples, class Store>
GPURUNTIME_DEVICE void convertEach(const platform::Block<blockSize>& block, Live live,
                                   const gpucommon::rand::NormalConversionInversion<T>& conversion,
                                   MakeSamples makeSamples, Store store) {
  PerThread<double, blockSize> values[S];
  makeSamples([&](Thread thread, const double(&samples)[S]) {
    unrolled<S>([&](auto i) { values[i][thread] = conversion.beforeInverse(samples[i]); });
  });
  for (PerThread<double, blockSize>& value : values) platform::erfcinvOfEach(block, live, value);
  block.forEachThread(live, [&](Thread thread) {
    double converted[S];
    unrolled<S>([&](auto i) { converted[i] = conversion.afterInverse(values[i][thread]); });
    store(thread, converted);
  });
}

/// Fills `blockSize * samplesAtATime` elements of `out`. Neighbouring threads make neighbouring generator blocks, put
/// their samples side by side into shared storage, and neighbouring threads write neighbouring elements.
template <class G, class Conversion, class T>
GPURUNTIME_DEVICE void randCoalescedWrites(const platform::Block<blockSize>& block, const Fixed1DBlockIterator& it,
                                           unsigned long n, T* out, const Conversion& conversion) {
  constexpr unsigned int size = G::samplesPerBlock, blockSamples = blockSize * samplesAtATime;
  const unsigned long first = it.block * blockSamples;
  if (first >= n) return;
  GPURUNTIME_SHARED(SharedTile<T>, shared);

  G generator;
  generator.setState(RNGInitialState.words);
  generator.advanceBlocks(it.block * (blockSamples / size));
  const unsigned int position = generator.position();
  const unsigned long count = n - first < blockSamples ? n - first : blockSamples;
  const unsigned long generatorBlocks = (position + count + size - 1) / size;

  // One more turn than a thread's samples need, for a stream that begins within a generator block.
  for (unsigned long made = 0; made < generatorBlocks; made += blockSize) {
    const Live live{generatorBlocks - made};
    const auto makeSamples = [&](auto use) { generator.forEachBlock(block, live, made, use); };
    convertEach<size>(block, live, conversion, makeSamples, [&](Thread thread, const double(&values)[size]) {
      if (platform::isIdle(thread.x >= live.x)) return;
      unrolled<size>([&](auto i) { shared.sharedMem[(made + thread.x) * size + i] = conversion.stored(values[i]); });
    });
  }
  block.sync();

  platform::OutputWindow<T, blockSamples, samplesAtATime> window(out, first, count, n);
  T* const target = window.pointer();
  for (unsigned long written = 0; written < count; written += blockSize) {
    block.forEachThread(Live{count - written}, [&](Thread thread) {
      if (platform::isIdle(thread.x >= count - written)) return;
      target[first + written + thread.x] = shared.sharedMem[written + thread.x + position];
    });
  }
  window.flush(block);
}

/// Each thread fills `samplesPerThread` elements of `out`, a multiple of samplesAtATime, from a state of its own.
template <class G, class Conversion, class T>
GPURUNTIME_DEVICE void randConsecutiveSamples(const platform::Block<blockSize>& block, const Fixed1DBlockIterator& it,
                                              unsigned long samplesPerThread, unsigned long n, T* out,
                                              const Conversion& conversion) {
  constexpr unsigned int stateWords = G::stateWords;
  const unsigned long first = it.thread * samplesPerThread;
  if (first >= n) return;
  const unsigned long needed = ceiledIntegerDivision(n - first, samplesPerThread);
  const Live live{needed < blockSize ? needed : blockSize};

  PerThread<double, blockSize> state[stateWords];
  block.forEachThread(live, [&](Thread thread) {
    if (platform::isIdle(thread.x >= live.x)) return;
    unsigned int words[stateWords];
    unrolled<stateWords>([&](auto i) { words[i] = RNGInitialState.words[i]; });
    gpucommon::rand::MRG32K3A::advance(words, first + thread.x * samplesPerThread);
    unrolled<stateWords>([&](auto i) { state[i][thread] = words[i]; });
  });

  for (unsigned long made = 0; made < samplesPerThread; made += samplesAtATime) {
    const auto makeSamples = [&](auto use) {
      block.forEachThread(live, [&](Thread thread) {
        if (platform::isIdle(thread.x >= live.x)) return;
        G generator;
        unrolled<stateWords>([&](auto i) { generator.setWord(i, state[i][thread]); });
        double samples[samplesAtATime];
        unrolled<samplesAtATime>([&](auto i) { samples[i] = generator.sample(); });
        unrolled<stateWords>([&](auto i) { state[i][thread] = generator.word(i); });
        use(thread, samples);
      });
    };
    PerThread<T, blockSize> values[samplesAtATime];
    convertEach<samplesAtATime>(
        block, live, conversion, makeSamples, [&](Thread thread, const double(&converted)[samplesAtATime]) {
          unrolled<samplesAtATime>([&](auto i) { values[i][thread] = conversion.stored(converted[i]); });
        });
    if (first + (live.x - 1) * samplesPerThread + made + samplesAtATime <= n) {
      platform::storeRuns(block, live, values, out + first + made, samplesPerThread, n);
      continue;
    }
    block.forEachThread(live, [&](Thread thread) {
      const unsigned long begin = first + thread.x * samplesPerThread + made;
      if (platform::isIdle(thread.x >= live.x)) return;
      unrolled<samplesAtATime>([&](auto i) {
        if (begin + i < n) out[begin + i] = values[i][thread];
      });
    });
  }
}

template <class G, class Conversion, class T>
GPURUNTIME_DEVICE void randCommonDispatch(const platform::Block<blockSize>& block, const Fixed1DBlockIterator& it,
                                          unsigned long samplesPerThread, unsigned long n, T* out,
                                          const Conversion& conversion) {
  if constexpr (LaunchPolicy<G>::GridOptimization == coalescedWrites) {
    randCoalescedWrites<G>(block, it, n, out, conversion);
  } else {
    randConsecutiveSamples<G>(block, it, samplesPerThread, n, out, conversion);
  }
}

template <class G, class T>
struct RandKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed1DBlockIterator& it,
                                      unsigned long samplesPerThread, unsigned long n, T* out) {
    randCommonDispatch<G>(block, it, samplesPerThread, n, out, gpucommon::rand::RandConversion<T>());
  }
};

template <class G, class T>
struct RandiKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed1DBlockIterator& it,
                                      unsigned long samplesPerThread, unsigned long n, T* out, double lo, double hi) {
    const gpucommon::rand::RandIConversion<T> conversion{lo, hi - lo + 1.0};
    randCommonDispatch<G>(block, it, samplesPerThread, n, out, conversion);
  }
};

template <class G, class T, class Conversion>
struct RandnKernel : BlockFunctor<blockSize> {
  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed1DBlockIterator& it,
                                      unsigned long samplesPerThread, unsigned long n, T* out) {
    randCommonDispatch<G>(block, it, samplesPerThread, n, out, Conversion());
  }
};

/// Copies the state to the device and runs the kernel. Without a state there is no launch.
template <class G, class Kernel, class T, class... Bounds>
void launch(CUstream_st* stream, T* out, const unsigned int* state, unsigned long n, Bounds... bounds) {
  unsigned long threads, samplesPerThread;
  if constexpr (LaunchPolicy<G>::GridOptimization == coalescedWrites) {
    threads = ceiledIntegerDivision<unsigned long>(n, samplesAtATime);
    samplesPerThread = samplesAtATime;
  } else {
    const CUDADeviceProperties& device = util::getCurrentDeviceProperties();
    const unsigned long blocksPerMultiprocessor = device.major < 3 ? 6 : 12;
    threads = blocksPerMultiprocessor * device.multiProcessorCount * blockSize;
    samplesPerThread = roundIntegerUpToMultipleOf<unsigned long>(ceiledIntegerDivision(n, threads), samplesAtATime);
  }
  const cudaError copied = platform::cudaMemcpyToSymbolAsync(RNGInitialState, state, sizeof(int) * G::stateWords, 0,
                                                             cudaMemcpyHostToDevice, stream);
  if (copied != cudaSuccess) return;
  fixed1dblock::launchWithDeviceFunctor<Kernel>(stream, threads, blockSize, samplesPerThread, n, out, bounds...);
}

}  // namespace

template <class G>
void advanceState(unsigned int* state, unsigned long n) {
  if constexpr (LaunchPolicy<G>::GridOptimization == coalescedWrites) {
    G generator;
    generator.setState(state);
    const unsigned long position = generator.position() + n % G::samplesPerBlock;
    generator.advanceBlocks(n / G::samplesPerBlock);
    generator.advanceBlocks(position / G::samplesPerBlock);
    generator.setPosition(static_cast<unsigned int>(position % G::samplesPerBlock));
    generator.getState(state);
  } else {
    gpucommon::rand::MRG32K3A::advance(state, n);
  }
}

template GPURUNTIME_API void advanceState<Philox4x32Generator>(unsigned int*, unsigned long);
template GPURUNTIME_API void advanceState<ThreeFry4x64Generator>(unsigned int*, unsigned long);
template GPURUNTIME_API void advanceState<MRG32K3AGenerator>(unsigned int*, unsigned long);

}  // namespace rand

template <class G>
template <class T>
void Rand<G>::Invoker<T>::operator()(CUstream_st* stream, T* out, unsigned int* state, unsigned long n) const {
  rand::launch<G, rand::RandKernel<G, T>>(stream, out, state, n);
}

template <class G>
template <class T>
void RandI<G>::Invoker<T>::operator()(CUstream_st* stream, T* out, unsigned int* state, double lo, double hi,
                                      unsigned long n) const {
  rand::launch<G, rand::RandiKernel<G, T>>(stream, out, state, n, lo, hi);
}

template <class G>
template <class T>
void RandNBoxMuller<G>::Invoker<T>::operator()(CUstream_st* stream, T* out, unsigned int* state,
                                               unsigned long n) const {
  using Conversion = gpucommon::rand::NormalConversionBoxMuller<T>;
  rand::launch<G, rand::RandnKernel<G, T, Conversion>>(stream, out, state, n);
}

template <class G>
template <class T>
void RandNInversion<G>::Invoker<T>::operator()(CUstream_st* stream, T* out, unsigned int* state,
                                               unsigned long n) const {
  using Conversion = gpucommon::rand::NormalConversionInversion<T>;
  rand::launch<G, rand::RandnKernel<G, T, Conversion>>(stream, out, state, n);
}

GPURUNTIME_INSTANTIATE(Rand<Philox4x32Generator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(Rand<ThreeFry4x64Generator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(Rand<MRG32K3AGenerator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(RandI<Philox4x32Generator>, REAL_NUMERIC_TYPES);
GPURUNTIME_INSTANTIATE(RandI<ThreeFry4x64Generator>, REAL_NUMERIC_TYPES);
GPURUNTIME_INSTANTIATE(RandI<MRG32K3AGenerator>, REAL_NUMERIC_TYPES);
GPURUNTIME_INSTANTIATE(RandNBoxMuller<Philox4x32Generator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(RandNBoxMuller<ThreeFry4x64Generator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(RandNInversion<Philox4x32Generator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(RandNInversion<ThreeFry4x64Generator>, REAL_FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(RandNInversion<MRG32K3AGenerator>, REAL_FLOAT_TYPES);

}  // namespace gpuruntime
