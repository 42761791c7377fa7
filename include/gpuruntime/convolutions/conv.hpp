/// @file
/// Convolution of vectors, by passes of some taps each.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

// Sizes in the names of members must be visible, or the members would be hidden with them.
#pragma GCC visibility push(default)
#include <boost/mpl/int.hpp>
#pragma GCC visibility pop

// The members of the families of passes: X(A, T, N) for each, in order.
#define GPURUNTIME_TAPS_1_TO_6(X, A, T) X(A, T, 1) X(A, T, 2) X(A, T, 3) X(A, T, 4) X(A, T, 5) X(A, T, 6)
#define GPURUNTIME_TAPS_7_TO_12(X, A, T) X(A, T, 7) X(A, T, 8) X(A, T, 9) X(A, T, 10) X(A, T, 11) X(A, T, 12)
#define GPURUNTIME_TAPS_13_TO_16(X, A, T) X(A, T, 13) X(A, T, 14) X(A, T, 15) X(A, T, 16)
#define GPURUNTIME_TAPS_1_TO_12(X, A, T) GPURUNTIME_TAPS_1_TO_6(X, A, T) GPURUNTIME_TAPS_7_TO_12(X, A, T)
#define GPURUNTIME_TAPS_1_TO_16(X, A, T) GPURUNTIME_TAPS_1_TO_12(X, A, T) GPURUNTIME_TAPS_13_TO_16(X, A, T)
#define GPURUNTIME_TAPS_32_TO_64(X, A, T) X(A, T, 32) X(A, T, 48) X(A, T, 64)
#define GPURUNTIME_TAPS_80_TO_128(X, A, T) X(A, T, 80) X(A, T, 96) X(A, T, 112) X(A, T, 128)
#define GPURUNTIME_PASS_MEMBERS(X, A)    \
  GPURUNTIME_TAPS_1_TO_16(X, A, double)  \
  GPURUNTIME_TAPS_32_TO_64(X, A, double) \
  GPURUNTIME_TAPS_1_TO_16(X, A, float)   \
  GPURUNTIME_TAPS_32_TO_64(X, A, float)  \
  GPURUNTIME_TAPS_80_TO_128(X, A, float) \
  GPURUNTIME_TAPS_1_TO_12(X, A, float2)  \
  X(A, float2, 24)                       \
  X(A, float2, 36) GPURUNTIME_TAPS_1_TO_6(X, A, double2) X(A, double2, 12) X(A, double2, 18) X(A, double2, 24)

/// Stands first in the Invokers of families with a size, `Invoker<T, N>`: a pair that the macro MEMBERS does not list,
/// or whose N is no Size<...>, is refused at compile time.
#define GPURUNTIME_FAMILY_TAKES_SIZES(Family, T, N, Size, MEMBERS)         \
  using Member = ::gpuruntime::detail::Pair<T, N>;                         \
  static_assert(false GPURUNTIME_##MEMBERS(GPURUNTIME_OR_IS_MEMBER, Size), \
                "gpuruntime::" #Family                                     \
                " has no member of this size for this element type: it takes GPURUNTIME_" #MEMBERS)
#define GPURUNTIME_OR_IS_MEMBER(Size, T, K) || std::is_same_v<Member, ::gpuruntime::detail::Pair<T, Size<K>>>

namespace gpuruntime {
namespace detail {

template <class T, class N>
struct Pair;

}  // namespace detail

namespace conv {

/// The halo H of the member of N taps for T: a pass of that member has at most H + 1 taps, extra ones included.
///
/// | T                 | halo                                      | largest N  |
/// |-------------------|-------------------------------------------|------------|
/// | `double`, `float` | 32 up to N = 16, then N + 16              | 64, 128    |
/// | `float2`          | 16 up to N = 4, 32 up to N = 12, then 48  | 36         |
/// | `double2`         | 16 up to N = 6, then 32                   | 24         |
///
/// So a pass of any length up to the largest N, and of some taps more, fits the largest N that is not above its length.
template <class T>
constexpr unsigned long haloOf(unsigned long N) {
  if (std::is_same_v<T, float2>) return N <= 4 ? 16 : N <= 12 ? 32 : 48;
  if (std::is_same_v<T, double2>) return N <= 6 ? 16 : 32;
  return N <= 16 ? 32 : N + 16;
}

/// What one pass does. `h` is the whole filter; the pass has Q = N + extraTaps of its taps, from `filterStart` on.
struct GPURUNTIME_API OffsetsAndSzs {
  unsigned long filterStart;  ///< Index in the filter of the pass's first tap.
  unsigned long outCount;     ///< Elements of the output.
  unsigned long inCount;      ///< Elements of the input.
  unsigned long extraTaps;    ///< Taps beyond the member's N.
  unsigned long inStart;      ///< Index in the input at which the first tile starts.
  unsigned long outStart;     ///< Position in the full convolution that output element 0 stands for.
  bool overwrite;             ///< true: the pass stores its sums. false: it adds them to the output.
};

}  // namespace conv

/// One pass of a direct convolution. With X the input, taken as 0 outside of it, the full convolution receives at
/// position k
///
///     sum = h[filterStart] * X[k - filterStart] + ... + h[filterStart + Q - 1] * X[k - filterStart - Q + 1]
///
/// and output element o, which stands for k = o + outStart, becomes `sum`, or `output[o] + sum`. A longer filter takes
/// several passes: the first overwrites, the others add, all with one `outStart`.
///
/// A pass reaches k from `inStart + filterStart` on, in tiles of 128 P positions: P = 4 for `double` and `double2`, 16
/// for `float`, 8 for `float2`. As many tiles as outCount elements need are made, one where outCount is 0. So `inStart`
/// is chosen to give `inStart + filterStart >= outStart`, and outputs below the first position are left alone, with
/// `overwrite` too. If the first tile starts below `outStart`, by d positions, then of every 128 positions of that tile
/// the first d are left alone.
///
/// The sum starts at +0 and takes its taps in ascending order, each by `sum = fma(x, f, sum)`. Of complex values, with
/// each operation rounded by itself,
///
///     re = x.re * f.re - x.im * f.im,   im = fma(x.re, f.im, x.im * f.re),   sum.re += re,   sum.im += im
///
/// Nothing is skipped: a NaN or infinite tap reaches every position that it touches, beyond the input too, as 0 * Inf
/// is NaN. What an output becomes does not depend on how many others a call computes.
///
/// `output`, `input` and `filter` are device arrays; the output overlaps neither of the others. The taps are copied on
/// the device, in the order of the stream, to the one place from which kernels read them: passes on different streams
/// must not overlap. If that copy fails, the call returns without a launch and without a word. Nothing is checked:
/// Q <= haloOf<T>(N) + 1 and filterStart + Q within the filter are the caller's. Raises MessageError if the device
/// can't be asked for its limits.
class ConvolutionVector {
 public:
  template <class T, class N>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES_SIZES(ConvolutionVector, T, N, mpl_::int_, PASS_MEMBERS);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, const T* filter,
                                   const conv::OffsetsAndSzs& pass) const;
  };
};

}  // namespace gpuruntime
