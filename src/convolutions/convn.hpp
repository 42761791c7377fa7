/// @file
/// The kernels of passes over a page, down its columns and along its rows, and their launch.
#pragma once

#include <gpuruntime/convolutions/conv2.hpp>
#include <gpuruntime/launcher/fixed2dblock.hpp>

#include "convolutions/convolutioncommon.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime {

namespace convolutioncommon {
namespace {
GPURUNTIME_CONSTANT_SYMBOL(Filter, filter);
}  // namespace
}  // namespace convolutioncommon

namespace convn {
namespace {

using namespace convolutioncommon;
using cuda::Fixed2DBlockIterator;
using gpucommon::hostDeviceMath::ceiledIntegerDivision;
using Sizes = std::vector<unsigned long>;

// Outputs of a thread.
template <class T>
inline constexpr unsigned int perThread = std::is_same_v<T, float>     ? 12
                                          : std::is_same_v<T, double2> ? 2
                                                                       : 4;

/// A value for each of the two dimensions of a page.
struct Pair {
  unsigned long x, y;
};

/// A pass as the kernels see it: page offsets are in the pointers.
template <class T>
struct PagePass {
  T* out;
  const T* in;
  Pair inSize, outSize;
  Pair regionStart, writeLimit, outStart;
  Pair shift;
  unsigned long taps;
  unsigned long halo;
  bool overwrite;

  // Calls store(value) with what becomes of an output and a sum.
  template <class Store>
  GPURUNTIME_DEVICE void forOutputs(Store store) const {
    if (overwrite) {
      store([](T& output, const T& sum) { output = sum; });
    } else {
      store([](T& output, const T& sum) { output = plus(output, sum); });
    }
  }
};

/// Down the columns: tiles of D by 4 outputs.
template <class T>
struct ConvolutionNDColumnKernel : BlockFunctor<32, 4> {
  static constexpr unsigned int P = perThread<T>, D = blockX * P;
  // A thread owns runs of A outputs, a row of threads apart.
  static constexpr unsigned int A = std::is_same_v<T, double2> ? 2 : 4;
  static constexpr unsigned int pitch = pitchOf<T, A>(D + longestHalo<T>);
  static constexpr unsigned int line = A * pitch;
  using Layout = RunLayout<A, pitch, 1>;

  struct Shared {
    Tile<T, blockY * line> s_Data;
  };

  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed2DBlockIterator& it, PagePass<T> pass) {
    GPURUNTIME_SHARED(Shared, shared);
    Tile<T, blockY* line>& data = shared.s_Data;
    const Pair start{pass.regionStart.x + it.blockX * D, pass.regionStart.y + it.blockY * blockY};
    const ThreadIndex lead = Layout::lead(pass.taps);
    load(block, data, pass, start, lead);
    block.sync();

    Sum<T, Block::size> sums[P];
    sumTaps<Layout, blockX>(block, reinterpret_cast<const T*>(filter.bytes), pass.taps, data, lead / A, sums,
                            [](Thread thread) { return thread.y * line + thread.x; });
    block.sync();
    block.forEachThread([&](Thread thread) {
      unrolled<P>([&](auto m) {
        data.set(thread.y * line + thread.x + (m / A * blockX + m % A * pitch), sums[m].get(thread));
      });
    });
    block.sync();
    pass.forOutputs([&](auto value) { store(block, data, pass, start, value); });
  }

  // Fills the lines of the tile and what leads to them, with 0 outside of the page.
  template <class Data>
  static GPURUNTIME_DEVICE void load(const Block& block, Data& data, const PagePass<T>& pass, Pair start,
                                     ThreadIndex lead) {
    const Pair size = pass.inSize;
    const bool isInside = start.x >= lead && start.x + D <= size.x && start.y + blockY <= size.y;
    for (ThreadIndex first = 0; first < D + lead; first += blockX * A) {
      const unsigned long from = start.x - lead + first;  // Before the page it wraps.
      const auto loadBy = [&](auto element) {
        block.template forEachOfRuns<A>(
            D + lead - first, [&](Thread thread, ThreadIndex column, auto k, ThreadIndex e) {
              data.set(thread.y * line + k * pitch + first / A + column, element(from + e, start.y + thread.y));
            });
      };
      if (isInside) {
        loadBy([&](unsigned long x, unsigned long y) { return pass.in[y * size.x + x]; });
      } else {
        loadBy(
            [&](unsigned long x, unsigned long y) { return x < size.x && y < size.y ? pass.in[y * size.x + x] : T{}; });
      }
    }
  }

  template <class Data, class Value>
  static GPURUNTIME_DEVICE void store(const Block& block, const Data& data, const PagePass<T>& pass, Pair start,
                                      Value value) {
    const Pair size = pass.outSize;
    const Pair position{start.x + pass.shift.x, start.y + pass.shift.y};
    // The tile's outputs that lie before the section: of each line as many as of every `blockX`, and lines.
    const Pair cut{Live::after(position.x, pass.outStart.x), Live::after(position.y, pass.outStart.y)};
    const Pair to{position.x - pass.outStart.x, position.y - pass.outStart.y};
    const bool withinLimit = start.x >= pass.halo && start.x + D <= pass.writeLimit.x;
    const auto storeIf = [&](unsigned long live, auto isReached) {
      for (ThreadIndex first = 0; first < D && first < live; first += blockX * A) {
        block.template forEachOfRuns<A>(live - first, [&](Thread thread, ThreadIndex column, auto k, ThreadIndex e) {
          if (!isReached(thread.y, first + e)) return;
          value(pass.out[(to.y + thread.y) * size.x + to.x + first + e],
                data.get(thread.y * line + k * pitch + first / A + column));
        });
      }
    };
    const bool isFree = withinLimit && start.y + blockY <= pass.writeLimit.y;
    const bool isChecked = !withinLimit || start.y >= pass.writeLimit.y;
    if (cut.x == 0 && cut.y == 0 && (isFree || (isChecked && to.y + blockY <= size.y))) {
      storeIf(isFree ? D : Live::after(to.x, size.x), [](ThreadIndex, ThreadIndex) { return true; });
    } else {
      storeIf(D, [=](ThreadIndex y, ThreadIndex e) {
        return y >= cut.y && e % blockX >= cut.x &&
               ((withinLimit && start.y + y < pass.writeLimit.y) || (to.y + y < size.y && to.x + e < size.x));
      });
    }
  }
};

/// Along the rows: tiles of 16 by D outputs. A thread owns P outputs that follow one another. Neighbouring threads find
/// what they work on side by side, in the order of memory.
template <class T>
struct ConvolutionNDRowKernel : BlockFunctor<16, 8> {
  static constexpr unsigned int P = perThread<T>, D = blockY * P;
  using Layout = RunLayout<1, 0, blockX>;

  struct Shared {
    Tile<T, (D + longestHalo<T>)*blockX> s_Data;
  };

  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed2DBlockIterator& it, PagePass<T> pass) {
    GPURUNTIME_SHARED(Shared, shared);
    const Pair start{pass.regionStart.x + it.blockX * blockX, pass.regionStart.y + it.blockY * D};
    const ThreadIndex lead = Layout::lead(pass.taps);
    load(block, shared.s_Data, pass, start, lead);
    block.sync();

    Sum<T, Block::size> sums[P];
    sumTaps<Layout, blockX>(block, reinterpret_cast<const T*>(filter.bytes), pass.taps, shared.s_Data, lead * blockX,
                            sums, [](Thread thread) { return thread.y * (P * blockX) + thread.x; });
    pass.forOutputs([&](auto value) { store(block, sums, pass, start, value); });
  }

  // Fills the tile and what leads to it, with 0 outside of the page.
  template <class Data>
  static GPURUNTIME_DEVICE void load(const Block& block, Data& data, const PagePass<T>& pass, Pair start,
                                     ThreadIndex lead) {
    const Pair size = pass.inSize;
    const bool isInside = start.y >= lead && start.y + D <= size.y && start.x + blockX <= size.x;
    for (ThreadIndex first = 0; first < D + lead; first += blockY) {
      const ThreadIndex live = D + lead - first;
      const auto loadBy = [&](auto element) {
        block.forEachThread(Live{blockX, live}, [&](Thread thread) {
          if (platform::isIdle(thread.y >= live)) return;
          const unsigned long y = start.y - lead + first + thread.y;  // Before the page it wraps.
          data.set((first + thread.y) * blockX + thread.x, element(start.x + thread.x, y));
        });
      };
      if (isInside) {
        loadBy([&](unsigned long x, unsigned long y) { return pass.in[y * size.x + x]; });
      } else {
        loadBy(
            [&](unsigned long x, unsigned long y) { return x < size.x && y < size.y ? pass.in[y * size.x + x] : T{}; });
      }
    }
  }

  template <class Value>
  static GPURUNTIME_DEVICE void store(const Block& block, const Sum<T, Block::size> (&sums)[P], const PagePass<T>& pass,
                                      Pair start, Value value) {
    const Pair size = pass.outSize;
    const Pair position{start.x + pass.shift.x, start.y + pass.shift.y};
    // The tile's outputs that lie before the section: of each row, and of every `blockY` rows.
    const Pair cut{Live::after(position.x, pass.outStart.x), Live::after(position.y, pass.outStart.y)};
    const Pair to{position.x - pass.outStart.x, position.y - pass.outStart.y};
    const bool withinLimit = start.y >= pass.halo && start.y + D <= pass.writeLimit.y;
    const auto storeIf = [&](auto isReached) {
      block.forEachThread([&](Thread thread) {
        unrolled<P>([&](auto m) {
          const ThreadIndex row = thread.y * P + m;
          if (!isReached(thread.x, row)) return;
          value(pass.out[(to.y + row) * size.x + to.x + thread.x], sums[m].get(thread));
        });
      });
    };
    const bool isFree = withinLimit && start.x + blockX <= pass.writeLimit.x;
    const bool fits = to.x + blockX <= size.x && to.y + D <= size.y;
    if (cut.x == 0 && cut.y == 0 && (isFree || fits)) {
      storeIf([](ThreadIndex, ThreadIndex) { return true; });
    } else {
      storeIf([=](ThreadIndex x, ThreadIndex row) {
        return x >= cut.x && row % blockY >= cut.y &&
               ((withinLimit && start.x + x < pass.writeLimit.x) || (to.x + x < size.x && to.y + row < size.y));
      });
    }
  }
};

/// The taps and the halo of a member, for the launches.
struct Member {
  unsigned long taps;
  unsigned long halo;
};

/// The pass along dimension 0 or 1 without its page offsets.
template <class T>
PagePass<T> pagePass(T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                     const OffsetsAndSzs& pass, Member member, int dimension) {
  const auto pair = [](const Sizes& sizes, unsigned int first) { return Pair{sizes[first], sizes[first + 1]}; };
  const Pair shift = dimension == 0 ? Pair{pass.lineShift, pass.crossShift} : Pair{pass.crossShift, pass.lineShift};
  return {output,
          input,
          pair(inputSizes, 0),
          pair(outputSizes, 0),
          pair(pass.regionBounds, 0),
          pair(pass.regionBounds, 2),
          pair(pass.outStart, 0),
          shift,
          member.taps,
          member.halo,
          pass.overwrite};
}

template <class T>
void launchColumns(CUstream_st* stream, T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                   const OffsetsAndSzs& pass, Member member) {
  using Kernel = ConvolutionNDColumnKernel<T>;
  fixed2dblock::launchWithDeviceFunctor<Kernel>(stream, ceiledIntegerDivision<unsigned long>(pass.xExtent, Kernel::P),
                                                pass.yExtent, Kernel::blockX, Kernel::blockY,
                                                pagePass(output, input, inputSizes, outputSizes, pass, member, 0));
}

template <class T>
void launchRows(CUstream_st* stream, T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                const OffsetsAndSzs& pass, Member member) {
  using Kernel = ConvolutionNDRowKernel<T>;
  fixed2dblock::launchWithDeviceFunctor<Kernel>(
      stream, pass.xExtent, ceiledIntegerDivision<unsigned long>(pass.yExtent, Kernel::P), Kernel::blockX,
      Kernel::blockY, pagePass(output, input, inputSizes, outputSizes, pass, member, 1));
}

/// The passes over a page of several.
template <class T>
struct ConvolutionNDCol_Invoker {
  Member member;

  void operator()(CUstream_st* stream, T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                  const OffsetsAndSzs& pass) const {
    launchColumns(stream, output + pass.outPageOffset, input + pass.inPageOffset, inputSizes, outputSizes, pass,
                  member);
  }
};

template <class T>
struct ConvolutionNDRow_Invoker {
  Member member;

  void operator()(CUstream_st* stream, T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                  const OffsetsAndSzs& pass) const {
    launchRows(stream, output + pass.outPageOffset, input + pass.inPageOffset, inputSizes, outputSizes, pass, member);
  }
};

}  // namespace
}  // namespace convn
}  // namespace gpuruntime
