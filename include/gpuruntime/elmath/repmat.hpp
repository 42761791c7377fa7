/// @file
/// Copies of vectors and columns side by side.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `output[y * length + x] = input[x]`, 0 <= x < length, 0 <= y < repeats: copies of a column vector, one behind the
/// other. (a b c) twice is a b c a b c.
///
/// Elements move as they are. The arrays must not overlap; that is not checked. A length or a number of repeats of 0
/// does nothing. Raises MessageError if the device can't be asked for its limits.
class RepmatColumnVector {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(RepmatColumnVector, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long length,
                                   unsigned long repeats) const;
  };
};

/// `output[(z * length + y) * rows + x] = input[y]`, 0 <= x < rows, 0 <= y < length, 0 <= z < pages: an array of rows
/// by length by pages elements, in each page of which column y holds `input[y]` throughout. (a b) in 3 rows and 2 pages
/// is a a a b b b a a a b b b.
///
/// Elements move as they are. The arrays must not overlap; that is not checked. A size of 0 does nothing. Raises
/// MessageError if the device can't be asked for its limits.
class RepmatRowVector {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(RepmatRowVector, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long length,
                                   unsigned long rows, unsigned long pages) const;
  };
};

/// `output[(repeats * z + y) * rows + x] = input[rows * z + x]`, 0 <= x < rows, 0 <= y < repeats, 0 <= z < columns:
/// each column of a column-major matrix of rows by columns elements so many times in a row, not the matrix side by side
/// with itself. (a b c d) of 2 rows and 2 columns twice is a b a b c d c d.
///
/// Elements move as they are. The arrays must not overlap; that is not checked. A size of 0 does nothing. Raises
/// MessageError if the device can't be asked for its limits.
class RepmatMatrixRows {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(RepmatMatrixRows, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* output, const T* input, unsigned long rows,
                                   unsigned long columns, unsigned long repeats) const;
  };
};

}  // namespace gpuruntime
