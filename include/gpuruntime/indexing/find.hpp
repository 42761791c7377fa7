/// @file
/// Positions of the elements that are not 0.
///
/// The last step of a compaction. `prefix` is the running count of the elements that are not 0:
///
///     FlagNonZero(stream, prefix, input, n)            1.0 and 0.0
///     CumSum(stream, totals, prefix, n, n, 1)          in place; its total is the length of the list
///     Find1D(stream, positions, input, prefix, k, n, mode)
///
/// An element is listed if it is not 0 as FlagNonZero has it: NaN is, -0 is not, a complex element is unless both parts
/// are 0, a `bool` if its byte is not 0. With q = `prefix[i]`, the ordinal of a listed element among all, from 1 on,
/// and total the last entry of `prefix`, it stands in the outputs at
///
///     q - 1                    in mode `first`, if q <= k
///     q - 1 - (total - k)      in mode `last`, if q > total - k and k <= total
///
/// so that the outputs ascend in the order of memory in either mode, and nothing else is written: with k above total,
/// mode `first` leaves the rest of the outputs alone, mode `last` writes nothing at all. Positions count from 1; those
/// above 2^53 are rounded to double. Any other mode does nothing, nor do no elements.
///
/// `prefix` must hold the counts of this input, each an integer up to 2^53, and be complete on the stream; this is not
/// checked, nor that outputs and inputs do not overlap and that the outputs hold min(k, total) elements. Raises
/// MessageError if the limits of the device or of the kernel can't be read.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Which of the elements are listed if there are more than asked for.
enum class FindFirstLast { first, last };

/// Positions i + 1 of the first or the last k elements that are not 0, 0 <= i < n <= 2^32.
class Find1D {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Find1D, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, double* positions, const T* input, const double* prefix,
                                   unsigned long k, unsigned long n, FindFirstLast mode) const;
  };
};

/// Rows r + 1 and columns c + 1 of the first or the last k elements that are not 0 of a matrix, in which element (r, c)
/// stands at `c * numRows + r`.
class Find2D {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Find2D, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, double* rows, double* columns, const T* input,
                                   const double* prefix, unsigned long k, unsigned long numRows,
                                   unsigned long numColumns, FindFirstLast mode) const;
  };
};

/// Find2D, and the elements themselves with every bit.
class Find2DWithValue {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Find2DWithValue, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, double* rows, double* columns, T* values, const T* input,
                                   const double* prefix, unsigned long k, unsigned long numRows,
                                   unsigned long numColumns, FindFirstLast mode) const;
  };
};

}  // namespace gpuruntime
