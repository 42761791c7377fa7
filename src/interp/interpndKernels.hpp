/// @file
/// The kernels of four and five dimensions, their launch, and what the families of any number of dimensions share.
#pragma once

#include <vector>

#include "interp/meshKernels.hpp"
#include "interp/scatteredKernels.hpp"
#include "interp/sizeSymbols.hpp"

namespace gpuruntime::interp {
namespace {

GPURUNTIME_CONSTANT_SYMBOL(SizesSymbol, interpQuerySz);
GPURUNTIME_CONSTANT_SYMBOL(SizesSymbol, interpValueSz);
GPURUNTIME_CONSTANT_SYMBOL(SizesSymbol, interpValueSzNcpQ);

/// A block of 128 threads on 1280 results, which follow one another in memory.
template <unsigned int D, class V, class GridArg, class T>
struct InterpNDKernel_CompactQuery : BlockFunctor<scatteredThreads> {
  using Block = platform::Block<scatteredThreads>;
  using Queries = Mesh<D, GridArg, T, V>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const cuda::Fixed1DBlockIterator& it, V* out, Queries mesh,
                                      unsigned long total) {
    const Sizes<D> sizes = firstSizes<D>(interpValueSz);
    const unsigned long begin = it.block * scatteredThreads * queriesPerThread;
    if constexpr (platform::prefersWholeBlocks) {
      const unsigned long live = Live::after(begin, total), most = scatteredThreads * queriesPerThread;
      interpolateRun(block, out, mesh, sizes, begin, begin + (live < most ? live : most));
    } else {
      const Sizes<D> strides = sizes.strides();
      block.forEachThread([&](Thread thread) {
        for (unsigned int k = 0; k < queriesPerThread; ++k) {
          const unsigned long index = begin + thread.x + k * scatteredThreads;
          if (index >= total) break;
          out[index] = mesh.valueAt(coordinatesOf(index), sizes, strides);
        }
      });
    }
  }

 private:
  static GPURUNTIME_DEVICE Sizes<D> coordinatesOf(unsigned long index) {
    Sizes<D> coordinates;
    auto rest = static_cast<unsigned int>(index);
    platform::unrolled<D>([&](auto d) {
      const auto size = static_cast<unsigned int>(interpQuerySz[d]);
      coordinates.of[d] = rest % size;
      rest /= size;
    });
    return coordinates;
  }

  /// Results [first, end), row by row.
  static GPURUNTIME_DEVICE void interpolateRun(const Block& block, V* out, const Queries& mesh, const Sizes<D>& sizes,
                                               unsigned long first, unsigned long end) {
    using Rows = MeshRows<D, GridArg, T, V>;
    Rows rows(mesh, sizes);
    for (unsigned long index = first; index < end;) {
      Sizes<D> coordinates = coordinatesOf(index);
      const unsigned long x = coordinates.of[0], begin = x / Rows::width * Rows::width;
      const unsigned long inRow = Live::after(begin, mesh.querySizes.of[0]);
      const unsigned long selected = inRow < Rows::width ? inRow : Rows::width;
      const unsigned long left = begin + selected - x, count = left < end - index ? left : end - index;
      rows.select(block, begin, selected);
      rows.write(block, out, coordinates, x - begin, count);
      index += count;
    }
  }
};

struct SizesOfNonCompactQuery {
  static GPURUNTIME_DEVICE const unsigned long* read() { return interpValueSzNcpQ; }
};
template <unsigned int D, class V, class GridArg, class T>
using InterpNDKernel_NonCompactQuery = ScatteredKernel<D, GridArg, T, V, SizesOfNonCompactQuery>;

/// The first D entries.
template <unsigned int D, class Entry>
Axes<D, Entry> firstAxes(const std::vector<Entry>& entries) {
  Axes<D, Entry> axes;
  for (unsigned int d = 0; d < D; ++d) axes.of[d] = entries[d];
  return axes;
}

/// What a family hands on, whatever the number of dimensions. G is the grid of a dimension: a pointer, or double2.
template <class G, class T, class V>
struct CompactCall {
  CUstream_st* stream;
  V* out;
  const std::vector<G>& grids;
  const V* values;
  const std::vector<const T*>& queries;
  const long long* bins;
  const std::vector<unsigned long>& querySizes;
  const std::vector<unsigned long>& valueSizes;
  const V& extrapolation;
  Methods methods;
};

template <unsigned int D, class G, class T, class V>
void launchCompact(const CompactCall<G, T, V>& call, unsigned long total) {
  const Mesh<D, G, T, V> mesh{firstAxes<D>(call.grids),
                              firstAxes<D>(call.queries),
                              binsOfDimensions<D>(call.bins, call.querySizes),
                              firstSizes<D>(call.querySizes.data()),
                              {call.values, call.extrapolation, call.methods}};
  launchScattered<InterpNDKernel_CompactQuery<D, V, G, T>>(call.stream, call.out, mesh, total);
}

/// Four or five dimensions; more do not fit in the symbols.
template <class G, class T, class V>
void InterpndKernel_CompactQuery_Invoker(const CompactCall<G, T, V>& call, unsigned long total,
                                         unsigned long dimensions) {
  if (!copySizesOrSay(interpQuerySz, call.querySizes.data(), dimensions, call.stream,
                      "Interpnd compact query kernel failed to copy querySz to constant memory") ||
      !copySizesOrSay(interpValueSz, call.valueSizes.data(), dimensions, call.stream,
                      "Interpnd compact query kernel failed to copy valueSz to constant memory")) {
    return;
  }
  if (dimensions == 4) launchCompact<4>(call, total);
  if (dimensions == 5) launchCompact<5>(call, total);
}

template <class G, class T, class V>
struct NonCompactCall {
  CUstream_st* stream;
  V* out;
  const std::vector<G>& grids;
  const V* values;
  const std::vector<const T*>& queries;
  const std::vector<unsigned long>& valueSizes;
  unsigned long queryCount;
  const V& extrapolation;
  Methods methods;
};

template <unsigned int D, class G, class T, class V>
void launchNonCompact(const NonCompactCall<G, T, V>& call) {
  const Scattered<D, G, T, V> scattered{
      firstAxes<D>(call.grids), firstAxes<D>(call.queries), {call.values, call.extrapolation, call.methods}};
  launchScattered<InterpNDKernel_NonCompactQuery<D, V, G, T>>(call.stream, call.out, scattered, call.queryCount);
}

/// Four or five dimensions; more do not fit in the symbol.
template <class G, class T, class V>
void InterpndKernel_NonCompactQuery_Invoker(const NonCompactCall<G, T, V>& call, unsigned long dimensions) {
  if (!copySizesOrSay(interpValueSzNcpQ, call.valueSizes.data(), dimensions, call.stream,
                      "Interpnd Noncompact query kernel failed to copy valueSz to constant memory")) {
    return;
  }
  if (dimensions == 4) launchNonCompact<4>(call);
  if (dimensions == 5) launchNonCompact<5>(call);
}

}  // namespace
}  // namespace gpuruntime::interp
