#include <gpuruntime/convolutions/conv2SmallSquareFilter.hpp>
#include <gpuruntime/launcher/fixed2dblock.hpp>

#include "convolutions/convolutioncommon.hpp"
#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime {
namespace convolutioncommon {
namespace {

using cuda::Fixed2DBlockIterator;
using gpucommon::hostDeviceMath::ceiledIntegerDivision;

GPURUNTIME_CONSTANT_SYMBOL(Filter, filter);

// A block makes a square of outputs.
constexpr unsigned int side = 16;

// Outputs of a thread, beside each other: the fewer, the larger filter and element.
template <class T, unsigned int K>
inline constexpr unsigned int perThread = isComplex<T> ? (K == 3   ? 4
                                                          : K == 5 ? 2
                                                                   : 1)
                                                       : (K <= 5 ? 4 : 2);

/// Reads K rows of the page, one column after the other. CHECKED: some of it may lie outside of the page.
template <class T, unsigned int K, bool CHECKED>
class InputPrefetcher {
 public:
  GPURUNTIME_INLINE InputPrefetcher(const T* input, long firstRow, long firstColumn, unsigned long rows,
                                    unsigned long columns)
      : input_(input), firstRow_(firstRow), firstColumn_(firstColumn), rows_(rows), columns_(columns) {}

  GPURUNTIME_INLINE void fetchFirstColumn(T (&values)[K]) {
    currentColumn_ = firstColumn_;
    column_ = currentColumn_ * static_cast<long>(rows_) + firstRow_;
    unrolled<K>([&](auto i)
                    GPURUNTIME_INLINE_LAMBDA { rowIsValid_[i] = static_cast<unsigned long>(firstRow_ + i) < rows_; });
    fetchColumn(values);
  }

  GPURUNTIME_INLINE void fetchColumn(T (&values)[K]) {
    const bool columnIsValid = static_cast<unsigned long>(currentColumn_) < columns_;
    unrolled<K>([&](auto i) GPURUNTIME_INLINE_LAMBDA {
      const bool isValid = !CHECKED || (columnIsValid & rowIsValid_[i]);
      values[i] = isValid ? platform::readOnlyLoad(input_ + (column_ + i)) : T{};
    });
    ++currentColumn_;
    column_ += static_cast<long>(rows_);
  }

 private:
  const T* input_;
  long column_ = 0;  // Index of the first element to read of the current column; outside of the page anything.
  long firstRow_;
  long firstColumn_;
  unsigned long rows_;
  unsigned long columns_;
  long currentColumn_ = 0;
  bool rowIsValid_[K] = {};
};

/// The tap for element (i, q) of the K by K elements under the filter, which lies on them turned by half a turn.
template <class T, unsigned int K>
GPURUNTIME_INLINE T fetchFilterCoefficient(unsigned int i, unsigned int q) {
  return reinterpret_cast<const T*>(filter.bytes)[K * K - 1 - K * q - i];
}

/// Adds what column `COLUMN` of those that a thread reads gives to its sums: it lies under each sum's K by K elements,
/// one column further to the left from sum to sum. Each element serves all sums before the next comes.
template <unsigned int COLUMN, class T, unsigned int K, unsigned int P>
GPURUNTIME_INLINE void convolveThisColumn(const T (&values)[K], T (&sums)[P]) {
  unrolled<K>([&](auto i) GPURUNTIME_INLINE_LAMBDA {
    unrolled<P>([&](auto p) GPURUNTIME_INLINE_LAMBDA {
      if constexpr (COLUMN >= p && COLUMN < p + K) {
        sums[p] = withProduct(fetchFilterCoefficient<T, K>(i, COLUMN - p), values[i], sums[p]);
      }
    });
  });
}

/// The outputs of a thread, whose first is that of the K by K elements from (row, column) on: store(p, sum).
template <class T, unsigned int K, bool CHECKED, class Store>
GPURUNTIME_INLINE void squareConv2(const T* input, long row, long column, unsigned long rows, unsigned long columns,
                                   Store store) {
  constexpr unsigned int P = perThread<T, K>;
  InputPrefetcher<T, K, CHECKED> prefetcher(input, row, column, rows, columns);
  T values[K], sums[P];
  unrolled<P>([&](auto p) GPURUNTIME_INLINE_LAMBDA { sums[p] = T{}; });
  unrolled<K + P - 1>([&](auto fetched) GPURUNTIME_INLINE_LAMBDA {
    if constexpr (fetched == 0) {
      prefetcher.fetchFirstColumn(values);
    } else {
      prefetcher.fetchColumn(values);
    }
    convolveThisColumn<fetched>(values, sums);
  });
  unrolled<P>([&](auto p) GPURUNTIME_INLINE_LAMBDA { store(p, sums[p]); });
}

template <class T, unsigned int K>
struct ConvolutionSquareKernel : BlockFunctor<side, side / perThread<T, K>> {
  using typename BlockFunctor<side, side / perThread<T, K>>::Block;
  static constexpr unsigned int P = perThread<T, K>;

  static GPURUNTIME_DEVICE void apply(const Block& block, const Fixed2DBlockIterator& it, T* out, const T* in,
                                      unsigned long outRows, unsigned long outColumns, unsigned long rows,
                                      unsigned long columns, unsigned long offsetX, unsigned long offsetY) {
    const unsigned long x = side * it.blockX, y = side * it.blockY;
    if (x >= outRows || y >= outColumns) return;
    const long row = static_cast<long>(offsetX + x) - (long{K} - 1);
    const long column = static_cast<long>(offsetY + y) - (long{K} - 1);
    const bool isWhole = x + side <= outRows && y + side <= outColumns;
    constexpr long reach = side + K - 1;
    const bool isInside = row >= 0 && column >= 0 && static_cast<unsigned long>(row + reach) <= rows &&
                          static_cast<unsigned long>(column + reach) <= columns;
    platform::OutputTile<T, side> tile(out, static_cast<long>(y * outRows + x), outRows, isWhole, outRows * outColumns);
    const auto storeAt = [&](Thread thread, unsigned int p, const T& sum) GPURUNTIME_INLINE_LAMBDA {
      tile.at(Thread{thread.x, thread.y * P + p, 0, 0}) = sum;
    };
    if (!platform::testsAreCheap && isWhole && isInside) {
      block.forEachThread([&](Thread thread) {
        squareConv2<T, K, false>(in, row + static_cast<long>(thread.x), column + static_cast<long>(thread.y * P), rows,
                                 columns,
                                 [&](auto p, const T& sum) GPURUNTIME_INLINE_LAMBDA { storeAt(thread, p, sum); });
      });
    } else {
      const Live live{outRows - x, ceiledIntegerDivision<unsigned long>(outColumns - y, P)};
      block.forEachThread(live, [&](Thread thread) {
        if (platform::isIdle(thread.x >= live.x || thread.y >= live.y)) return;
        squareConv2<T, K, true>(in, row + static_cast<long>(thread.x), column + static_cast<long>(thread.y * P), rows,
                                columns, [&](auto p, const T& sum) GPURUNTIME_INLINE_LAMBDA {
                                  if (y + thread.y * P + p < outColumns) storeAt(thread, p, sum);
                                });
      });
    }
    tile.flush(block);
  }
};

}  // namespace
}  // namespace convolutioncommon

template <class T, class N>
void ConvolutionSquare::Invoker<T, N>::operator()(CUstream_st* stream, T* output, const T* input, const T* filter,
                                                  const std::vector<unsigned long>& outputSizes,
                                                  const std::vector<unsigned long>& inputSizes, unsigned long,
                                                  const std::vector<unsigned long>& offsets,
                                                  convolutioncommon::PageOffsetInfo pages) const {
  using namespace convolutioncommon;
  using Kernel = ConvolutionSquareKernel<T, N::value>;
  if (platform::cudaMemcpyToSymbol(convolutioncommon::filter, filter, N::value * N::value * sizeof(T), 0,
                                   cudaMemcpyDeviceToDevice) != cudaSuccess) {
    return;
  }
  fixed2dblock::launchWithDeviceFunctor<Kernel>(
      stream, outputSizes[0], ceiledIntegerDivision<unsigned long>(outputSizes[1], Kernel::P), Kernel::blockX,
      Kernel::blockY, output + pages.outPageOffset, input + pages.inPageOffset, outputSizes[0], outputSizes[1],
      inputSizes[0], inputSizes[1], offsets[0], offsets[1]);
}

#define GPURUNTIME_INSTANTIATE_SQUARE(A, T, K) template struct ConvolutionSquare::Invoker<T, mpl_::size_t<K>>;
GPURUNTIME_SQUARE_MEMBERS(GPURUNTIME_INSTANTIATE_SQUARE, )

}  // namespace gpuruntime
