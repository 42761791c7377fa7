/// @file
/// Convolution of matrices with small square filters, at once.
#pragma once

#include <gpuruntime/convolutions/conv.hpp>

#include <vector>

#pragma GCC visibility push(default)
#include <boost/mpl/size_t.hpp>
#pragma GCC visibility pop

// The members: X(A, T, K) for each, in order.
#define GPURUNTIME_SQUARES_3_TO_7(X, A, T) X(A, T, 3) X(A, T, 5) X(A, T, 7)
#define GPURUNTIME_SQUARE_MEMBERS(X, A)   \
  GPURUNTIME_SQUARES_3_TO_7(X, A, double) \
  X(A, double, 9)                         \
  GPURUNTIME_SQUARES_3_TO_7(X, A, float)  \
  X(A, float, 9)                          \
  GPURUNTIME_SQUARES_3_TO_7(X, A, float2) \
  X(A, float2, 9)                         \
  GPURUNTIME_SQUARES_3_TO_7(X, A, double2)

namespace gpuruntime {

namespace convolutioncommon {

/// Offsets of pages, in elements.
struct GPURUNTIME_API PageOffsetInfo {
  unsigned long inPageOffset;
  unsigned long filterPageOffset;
  unsigned long outPageOffset;
};

}  // namespace convolutioncommon

/// Convolution of a column-major page with a filter of K by K taps, K = 3, 5, 7 or 9 (`double2`: up to 7):
///
///     output(x, y) = sum of filter(r, c) * input(offsets[0] + x - r, offsets[1] + y - c),   0 <= r, c < K
///
/// with the input taken as 0 outside of the page. So offsets (0, 0) with an output of inputSizes + K - 1 give the full
/// convolution, ((K - 1) / 2, (K - 1) / 2) with inputSizes its middle.
///
/// The sum starts at +0 and takes the taps in the reverse of their order in memory, from (K - 1, K - 1) on, r
/// descending within each c: `sum = fma(f, x, sum)`. Of complex values, with each operation rounded by itself,
///
///     re = f.re * x.re - f.im * x.im,   im = fma(f.re, x.im, f.im * x.re),   sum.re += re,   sum.im += im
///
/// The tap is the first factor here, the element in ConvolutionMatrix, so that imaginary parts may differ in the last
/// bit. Nothing is skipped: 0 * Inf is NaN, also where an infinite tap meets what lies outside of the page.
///
/// Every element of the output is stored; an empty one does nothing. The first two sizes and offsets are read; the
/// unnamed argument, and the filter's page offset, are not: `filter` is the page itself. The taps are copied to the one
/// place from which kernels read them, on the default stream: calls must not overlap, and the stream must be one that
/// waits for the default stream. If the copy fails, the call returns without a launch and without a word. Arrays must
/// not overlap; that is not checked. Raises MessageError if the device can't be asked for its limits.
class ConvolutionSquare {
 public:
  template <class T, class N>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES_SIZES(ConvolutionSquare, T, N, mpl_::size_t, SQUARE_MEMBERS);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, const T* filter,
                                   const std::vector<unsigned long>& outputSizes,
                                   const std::vector<unsigned long>& inputSizes, unsigned long,
                                   const std::vector<unsigned long>& offsets,
                                   convolutioncommon::PageOffsetInfo pages) const;
  };
};

}  // namespace gpuruntime
