/// @file
/// The cuda backend. The contract is in platform.hpp.
#pragma once

#include "../extent.hpp"

#include <cuda_runtime.h>

#include <cmath>

#define GPURUNTIME_DEVICE __device__ inline
#define GPURUNTIME_HOST_DEVICE __host__ __device__ inline

#define GPURUNTIME_DEVICE_SYMBOL(T, name) static __device__ T name
#define GPURUNTIME_CONSTANT_SYMBOL(T, name) static __constant__ T name
// A table stands in the device's memory and, for host code, in the host's.
#define GPURUNTIME_CONSTANT_TABLE(T, name, ...)                   \
  static __constant__ __attribute__((used)) T name = __VA_ARGS__; \
  [[maybe_unused]] static constexpr T name##_HOST = __VA_ARGS__
#ifdef __CUDA_ARCH__
#define GPURUNTIME_TABLE(name) name
#else
#define GPURUNTIME_TABLE(name) name##_HOST
#endif
#define GPURUNTIME_SHARED(T, name) __shared__ T name

#define GPURUNTIME_INLINE __host__ __device__ __forceinline__
#define GPURUNTIME_CALLED __host__ __device__ __noinline__
#define GPURUNTIME_INLINE_LAMBDA __attribute__((always_inline))

#include "../polar.hpp"
#include "../power.hpp"
#include "../unrolled.hpp"

namespace gpuruntime::platform {

using ::cudaDeviceProp;
using ::cudaFuncAttributes;
using ::cudaGetDevice;
using ::cudaGetDeviceProperties;
using ::cudaGetErrorString;
using ::cudaMemcpyAsync;
using ::cudaMemcpyFromSymbol;
using ::cudaMemcpyFromSymbolAsync;
using ::cudaMemcpyToSymbol;
using ::cudaMemcpyToSymbolAsync;
using ::cudaStreamSynchronize;

using ThreadIndex = unsigned int;

// All threads run.
__device__ inline bool isIdle(bool beyondLive) {
  return beyondLive;
}

struct Thread {
  ThreadIndex x;
  ThreadIndex y;
  ThreadIndex z;
  ThreadIndex lane;
};

/// A pack is one thread here.
struct Pack {
  static constexpr unsigned int size = 1;

  ThreadIndex first;

  __device__ unsigned long threads() const { return first; }
};
using LongWords = unsigned long;
using Words = unsigned int;

__host__ __device__ inline Words narrowed(LongWords word) {
  return static_cast<Words>(word);
}
__host__ __device__ inline LongWords widened(Words word) {
  return word;
}
__host__ __device__ inline Words mulhilo(Words a, unsigned int b, Words* upper) {
  const LongWords product = static_cast<LongWords>(a) * b;
  *upper = static_cast<Words>(product >> 32);
  return static_cast<Words>(product);
}

template <unsigned int X = 0, unsigned int Y = 1>
class Block {
 public:
  static constexpr unsigned int size = X * Y;  ///< Threads, where the shape is known.

  __device__ Extent index() const { return {blockIdx.x, blockIdx.y, blockIdx.z}; }
  __device__ Extent grid() const { return {gridDim.x, gridDim.y, gridDim.z}; }
  __device__ Extent shape() const {
    if constexpr (X == 0) {
      return {blockDim.x, blockDim.y, blockDim.z};
    } else {
      return {X, Y, 1};
    }
  }

  template <unsigned int FixedX, unsigned int FixedY = 1>
  __device__ Block<FixedX, FixedY> withShape() const {
    return {};
  }

  template <class Step>
  __device__ void forEachThread(Step step) const {
    const Extent size = shape();
    step(Thread{threadIdx.x, threadIdx.y, threadIdx.z, (threadIdx.z * size.y + threadIdx.y) * size.x + threadIdx.x});
  }

  template <class Step>
  __device__ void forEachThread(Live, Step step) const {
    forEachThread(step);
  }

  template <class T, class Step>
  __device__ void forEachRow(Live live, const T* in, unsigned long pitch, unsigned long rows, Step step) const {
    forEachThread([&](Thread thread) {
      if (thread.x >= live.x) return;
      for (unsigned long row = 0; row < rows; ++row) step(thread, in[row * pitch + thread.x], row);
    });
  }

  template <class Step>
  __device__ void forEachThreadOfBox(Live, Step step) const {
    forEachThread(step);
  }

  template <class PlaceOf, class Step>
  __device__ void forEachPlace(Live, PlaceOf placeOf, Step step) const {
    forEachThread([&](Thread thread) { step(thread, placeOf(thread)); });
  }

  template <class Step>
  __device__ void forEachPack(Live, Step step) const {
    step(Pack{threadIdx.x});
  }

  /// Neighbouring threads take elements that follow one another.
  template <unsigned int RUN, class Step>
  __device__ void forEachOfRuns(unsigned long live, Step step) const {
    forEachThread([&](Thread thread) {
      unrolled<RUN>([&](auto i) {
        const ThreadIndex e = i * shape().x + thread.x;
        if (e < live) step(thread, e / RUN, e % RUN, e);
      });
    });
  }

  /// True if the test holds for this thread: each that finds something reports it.
  template <class Test>
  __device__ bool findsAny(Live, Test test) const {
    bool found = false;
    forEachThread([&](Thread thread) { found = test(thread); });
    return found;
  }

  template <class Lists, class SlotOf, class Write>
  __device__ void forEachListed(Live, Lists lists, SlotOf slotOf, Write write) const {
    forEachThread([&](Thread thread) {
      if (lists(thread)) write(thread, slotOf(thread));
    });
  }

  __device__ void sync() const { __syncthreads(); }
};

template <class T, unsigned int N>
class PerThread {
 public:
  __device__ T& operator[](const Thread&) { return value_; }
  __device__ const T& operator[](const Thread&) const { return value_; }
  __device__ void set(const Pack&, LongWords word) { value_ = word; }

 private:
  T value_;
};

/// A node stands in the place of its right child. One more cell after every 16 keeps the nodes of a level, a power of
/// two apart, from falling on one memory bank.
template <class T, unsigned int N>
class PairTrees {
 public:
  static constexpr bool standsOnArrays = false;
  static constexpr unsigned int leaves = N;

  __device__ void useOwnLeaves() {}
  __device__ void useArray(T*) {}

  struct Level {
    T* cells;
    unsigned int level;

    __device__ T& operator[](ThreadIndex index) const {
      const unsigned int leaf = ((index + 1) << level) - 1;
      return cells[leaf + (leaf >> 4)];
    }
  };
  __device__ Level level(unsigned int level) { return {cells_, level}; }

 private:
  T cells_[N + N / 16];
};

/// Device stores go through the cache of the device, which writes whole lines by itself.
template <class T, unsigned int N = 256, unsigned int PER_THREAD = 1>
class OutputWindow {
 public:
  __device__ OutputWindow(T* out, unsigned long, unsigned long, unsigned long) : out_(out) {}

  __device__ T* pointer() { return out_; }

  template <class Block>
  __device__ void flush(const Block&) {}

 private:
  T* out_;
};

/// The columns of a tile in shared storage, read where they stand.
template <class T, unsigned int N, unsigned int PITCH>
class TransposedTile {
 public:
  __device__ explicit TransposedTile(const T (&tile)[N][PITCH]) : tile_(tile) {}

  __device__ const T& operator()(unsigned int row, unsigned int column) const { return tile_[column][row]; }

 private:
  const T (&tile_)[N][PITCH];
};

template <class T, unsigned int N>
class OutputTile {
 public:
  __device__ OutputTile(T* out, long corner, unsigned long pitch, bool, unsigned long)
      : out_(out), corner_(corner), pitch_(static_cast<long>(pitch)) {}

  __device__ T& at(const Thread& thread) { return out_[corner_ + thread.y * pitch_ + thread.x]; }

  template <class Block>
  __device__ void flush(const Block&) {}

 private:
  T* out_;
  long corner_;
  long pitch_;
};

template <class Block, class T, unsigned int N, unsigned int PITCH>
__device__ void loadTile(const Block& block, T (&tile)[N][PITCH], Live live, const T* in, unsigned long pitch) {
  block.forEachThread([&](Thread thread) {
    if (thread.x < live.x && thread.y < live.y) tile[thread.y][thread.x] = in[thread.y * pitch + thread.x];
  });
}

template <class Block, class T, unsigned int N, unsigned int PITCH>
__device__ void storeTransposed(const Block& block, const T (&tile)[N][PITCH], Live live, T* out, unsigned long pitch,
                                unsigned long) {
  block.forEachThread([&](Thread thread) {
    if (thread.x < live.x && thread.y < live.y) out[thread.y * pitch + thread.x] = tile[thread.x][thread.y];
  });
}

template <class Block, class T>
__device__ void copyRun(const Block& block, T* out, const T* in, unsigned long live, unsigned long) {
  block.forEachThread([=](Thread thread) {
    if (thread.x < live) out[thread.x] = in[thread.x];
  });
}

// One element longer than the tile, so that a column does not fall on one memory bank.
template <class T, unsigned int N>
inline constexpr unsigned int tilePitch = N + 1;

/// Each live thread t of a one-dimensional block loads its eight values from in[t * pitch] and behind.
template <class Block, class T, unsigned int N>
__device__ void loadRuns(const Block&, Live live, PerThread<T, N> (&values)[8], const T* in, unsigned long pitch) {
  const Thread thread{threadIdx.x, 0, 0, threadIdx.x};
  if (thread.x >= live.x) return;
  unrolled<8>([&](auto i) { values[i][thread] = in[thread.x * pitch + i]; });
}

/// Each live thread t of a one-dimensional block stores its eight values at out[t * pitch] and behind; in 16 bytes at a
/// time where the address allows it.
template <class Block, class T, unsigned int N>
__device__ void storeRuns(const Block&, Live live, const PerThread<T, N> (&values)[8], T* out, unsigned long pitch,
                          unsigned long) {
  const Thread thread{threadIdx.x, 0, 0, threadIdx.x};
  if (thread.x >= live.x) return;
  T* const target = out + thread.x * pitch;
  if constexpr (sizeof(T) >= 2) {
    constexpr unsigned int together = 16 / sizeof(T);
    struct alignas(16) Group {
      T elements[together];
    };
    if (reinterpret_cast<unsigned long>(target) % sizeof(Group) == 0) {
      unrolled<8 / together>([&](auto g) {
        Group group;
        unrolled<together>([&](auto i) { group.elements[i] = values[g * together + i][thread]; });
        *reinterpret_cast<Group*>(target + g * together) = group;
      });
      return;
    }
  }
  unrolled<8>([&](auto i) { target[i] = values[i][thread]; });
}

template <unsigned int RUNS, class T>
__device__ void loadRuns(T* columns, const T* in, unsigned long n);  // Only where blocks are joined.

// The device hides its latencies by itself, and its blocks run in an order of its own.
template <unsigned int N, class T>
__device__ void prefetchNextTile(const T*, unsigned long) {}
template <unsigned int N, class T>
__device__ void prefetchOutputTile(const T*, long, unsigned long) {}

template <unsigned int N, class T>
__device__ void prefetchTile(const T*, unsigned long, Live) {}
template <class T>
__device__ void prefetchRunAhead(const T*, unsigned long, unsigned long) {}

template <class T, unsigned int N>
inline constexpr unsigned int blocksPerLine = 1;
template <class T, unsigned int N>
inline constexpr unsigned int joinedTiles = 1;
template <class T>
inline constexpr unsigned int joinedRuns = 1;
inline constexpr unsigned int blocksAtOnce = 1;
inline constexpr bool prefersWholeBlocks = false;
inline constexpr bool testsAreCheap = true;

template <class... Args>
using Kernel = void (*)(Args...);

namespace detail {
template <class K, class... Args>
__global__ void runKernel(Args... args) {
  if constexpr (takesSteps<K>) {
    const unsigned int steps = K::steps(args...);
    for (unsigned int step = 0; step < steps; ++step) K::runStep(Block<>(), step, args...);
  } else {
    K::run(Block<>(), args...);
  }
}
}  // namespace detail

template <class K, class... Args>
Kernel<Args...> kernelOf() {
  return &detail::runKernel<K, Args...>;
}

template <class... Args>
cudaError cudaFuncGetAttributes(cudaFuncAttributes* attributes, Kernel<Args...> kernel) {
  return ::cudaFuncGetAttributes(attributes, reinterpret_cast<const void*>(kernel));
}

template <class... Args>
cudaError launch(Kernel<Args...> kernel, Extent grid, Extent shape, CUstream_st* stream,
                 typename NonDeduced<Args>::type... args) {
  void* addresses[] = {static_cast<void*>(&args)...};
  return ::cudaLaunchKernel(reinterpret_cast<const void*>(kernel), dim3(grid.x, grid.y, grid.z),
                            dim3(shape.x, shape.y, shape.z), addresses, 0, stream);
}

}  // namespace gpuruntime::platform

#include "arithmetic.hpp"
