/// @file
/// Convolution of arrays of two or more dimensions, by passes along lines of the filter.
#pragma once

#include <gpuruntime/convolutions/conv.hpp>

#include <vector>

namespace gpuruntime {

namespace convolutioncommon {

/// The direction of a pass.
enum KernelType : int {
  KernelTypeColumn = 0,  ///< Along dimension 0, down the columns.
  KernelTypeRow = 1      ///< Along dimension 1, along the rows. So is any other value.
};

}  // namespace convolutioncommon

namespace convn {

/// What one pass does, in elements.
struct GPURUNTIME_API OffsetsAndSzs {
  unsigned long lineShift;   ///< Added to the position along the filtered dimension: the stretch's place in its line.
  unsigned long crossShift;  ///< Added to the position along the other dimension: the line's place in the filter.
  unsigned long extraTaps;   ///< Taps beyond the member's N.
  /// Region start in dimension 0 and 1, write limit in dimension 0 and 1.
  std::vector<unsigned long> regionBounds;
  /// Position, in dimension 0 and 1, that output element (0, 0) stands for.
  std::vector<unsigned long> outStart;
  unsigned long inPageOffset;      ///< Of the input page. Three dimensions and more.
  unsigned long filterPageOffset;  ///< Of the filter's page.
  unsigned long outPageOffset;     ///< Of the output page. Three dimensions and more.
  unsigned long filterLineOffset;  ///< Of the stretch in the filter's page.
  unsigned long xExtent;           ///< Positions to cover in dimension 0.
  unsigned long yExtent;           ///< Positions to cover in dimension 1.
  bool overwrite;                  ///< true: the pass stores its sums. false: it adds them to the output.
};

}  // namespace convn

/// One pass of a direct convolution of column-major arrays: Q = N + extraTaps taps f[0] to f[Q - 1], which follow one
/// another in memory from `filter[filterPageOffset + filterLineOffset]` on, along one of the first two dimensions of a
/// page. With X the page, taken as 0 outside of it, position (p, q) of the full convolution receives
///
///     f[0] * X(p - lineShift, q - crossShift) + ... + f[Q - 1] * X(p - lineShift - Q + 1, q - crossShift)
///
/// by KernelTypeColumn, and by KernelTypeRow
///
///     f[0] * X(p - crossShift, q - lineShift) + ... + f[Q - 1] * X(p - crossShift, q - lineShift - Q + 1)
///
/// Output element (r, c) stands for position (r, c) + outStart; it becomes the sum, or `output + sum`. Sums are those
/// of ConvolutionVector, to the bit: taps ascend from +0 on. A filter is the sum of passes over its lines, and over its
/// pages: the first pass overwrites, the others add. See docs/convolution.md.
///
/// A pass covers the region from `regionBounds` 0 and 1 on, in coordinates of the input, by whole blocks: D by 4
/// positions by KernelTypeColumn, 16 by D by KernelTypeRow, as many as hold xExtent by yExtent positions, at least one
/// where the extent along the filtered dimension is 0, none where the other is. D is
///
/// |     T                 | `float` | `double` | `float2` | `double2` |
/// |-----------------------|---------|----------|----------|-----------|
/// |     KernelTypeColumn  | 384     | 128      | 128      | 64        |
/// |     KernelTypeRow     | 96      | 32       | 32       | 16        |
///
/// Outputs that the blocks don't reach are left alone, with `overwrite` too; outputs that they reach are written beyond
/// a short extent as well. Positions before `outStart` are left out; where a block begins before it along the filtered
/// dimension, by d positions, the first d of every 32 (KernelTypeColumn) or 8 (KernelTypeRow) of its positions are. A
/// block's line, a column or a row of its own, is written without a look at the output's sizes if the block begins at
/// or behind position haloOf<T>(N) along the filtered dimension and both it and the line end within the write limits,
/// in coordinates of the input: there every output must be valid. Elsewhere what lies outside of the output is left
/// out.
///
/// `inputSizes` and `outputSizes` hold the sizes of one page first; more are not read. `dimensions` below 3 takes both
/// page offsets, not that of the filter, for 0. The taps are copied on the default stream to the one place from which
/// kernels read them: passes must not overlap, and the stream must be one that waits for the default stream. If that
/// copy fails, the call returns without a launch and without a word. Nothing is checked: Q <= conv::haloOf<T>(N) + 1,
/// and the taps within the filter, are the caller's. The output overlaps neither input nor filter. Raises MessageError
/// if the device can't be asked for its limits.
class ConvolutionMatrix {
 public:
  template <class T, class N>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES_SIZES(ConvolutionMatrix, T, N, mpl_::int_, PASS_MEMBERS);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, const T* filter,
                                   const std::vector<unsigned long>& inputSizes,
                                   const std::vector<unsigned long>& outputSizes, const convn::OffsetsAndSzs& pass,
                                   const unsigned long& dimensions,
                                   const convolutioncommon::KernelType& direction) const;
  };
};

}  // namespace gpuruntime
