/// @file
/// Linear indices of subscripts, subscripts of linear indices, and one element of each row or column.
///
/// Indices count from 1, are held in `double`, and follow column-major order:
/// row + numRows * (column - 1) + numRows * numCols * (page - 1). Sizes are rounded to `double` where they enter a
/// floating operation. 0 <= i < n throughout, and n = 0 writes no element. Arrays that are read and arrays that are
/// written must not overlap; that is not checked. All raise MessageError if the device can't be asked for its limits.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `linear[i] = fma(numRows, columns[i] - 1, rows[i])`. NaN and infinities go their way through these operations, and
/// nothing is checked.
class Sub2Ind2D {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Sub2Ind2D, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows, const T* columns,
                                   unsigned long numRows) const;
  };
};

/// `linear[i] = fma(numRows, fma(numCols, pages[i] - 1, columns[i] - 1), rows[i])`, unchecked as well.
class Sub2Ind3D {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Sub2Ind3D, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows, const T* columns,
                                   const T* pages, unsigned long numRows, unsigned long numCols) const;
  };
};

/// Sub2Ind2D, which also reports `linear[i] < 1`, `rows[i] > numRows` and `columns[i] > numCols` by the error word.
/// Every element is computed in any case.
///
/// That is all that is checked: row 0 of column 2 has a linear index above 0, and NaN compares as false. For such, and
/// for fractions, see IndexValidation.
///
/// The Invoker first sets the error word to 1000 on the stream, also for n = 0. If that fails, it returns with nothing
/// launched and nothing reported. The kernel sets the word to 1030 if a test holds. Sub2Ind2DChecked and
/// Sub2Ind3DChecked share the one word, as do all calls: to read it for one of them, start no other before getErrorFlag
/// has returned.
class Sub2Ind2DChecked {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Sub2Ind2DChecked, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows, const T* columns,
                                   unsigned long numRows, unsigned long numCols) const;
  };

  /// Waits for the stream and returns the error word: 1000 if the last call on it met no subscript out of range, 1030
  /// if it did, 0 if none was made, and 1037 if the word can't be read. Throws nothing.
  GPURUNTIME_API unsigned int getErrorFlag(CUstream_st* stream) const;
};

/// The same for Sub2Ind3D, which also reports `pages[i] > numPages`.
class Sub2Ind3DChecked {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Sub2Ind3DChecked, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows, const T* columns,
                                   const T* pages, unsigned long numRows, unsigned long numCols,
                                   unsigned long numPages) const;
  };

  /// As Sub2Ind2DChecked::getErrorFlag.
  GPURUNTIME_API unsigned int getErrorFlag(CUstream_st* stream) const;
};

/// Row and column of a linear index. With v = `linear[i]`, and q = trunc(v - 1) / numRows the quotient of unsigned
/// 64-bit integers (below 0 and NaN are taken as 0, beyond the range as its end),
///
///     rows[i] = v - q * numRows, columns[i] = q + 1
///
/// in `double`, each operation rounded by itself. A fraction of v stays in the row. NaN gives row NaN, column 1. That
/// numRows is at least 1 is not checked.
class Ind2Sub2D {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Ind2Sub2D, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* rows, T* columns, const T* linear,
                                   unsigned long numRows) const;
  };
};

/// Row, column and page of a linear index v: with the page size s = numRows * numCols modulo 2^64 and the quotient r =
/// trunc(v - 1) / s, as above, `pages[i] = r + 1`, and row and column are those of the linear index v - r * s. That s
/// and numRows are at least 1 is not checked.
class Ind2Sub3D {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Ind2Sub3D, T, DoubleTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* rows, T* columns, T* pages, const T* linear,
                                   unsigned long numRows, unsigned long numCols) const;
  };
};

/// `output[i] = input[(k - 1) * stride + i]` with k = `index[i]` truncated towards zero: of row i of a matrix of
/// `stride` rows, the element in column k. Elements move as they are.
///
/// Not checked: k is at least 1, and at most the number of columns. In libraries built with GPURUNTIME_CHECK_INDICES
/// an element whose k is below 1 is left alone, and reported by the error word of Sub2Ind2DChecked.
class SelectFromRows {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SelectFromRows, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* output, const T* input, const double* index,
                                   unsigned long stride) const;
  };
};

/// `output[i] = input[i * stride + k - 1]` with k = `index[i]` truncated towards zero: of column i of a matrix of
/// `stride` rows, the element in row k. Elements move as they are.
///
/// Not checked: k lies from 1 to stride. In libraries built with GPURUNTIME_CHECK_INDICES an element where it does not
/// is left alone, and reported by the error word of Sub2Ind2DChecked.
class SelectFromColumns {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SelectFromColumns, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* output, const T* input, const double* index,
                                   unsigned long stride) const;
  };
};

}  // namespace gpuruntime
