/// @file
/// The diagonal of an identity matrix.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `out[i * (rows + 1)] = 1`, 0 <= i < n: ones on the main diagonal of a column-major matrix of `rows` rows.
///
/// One is (1, 0) for a complex T and the byte 1 for bool. Nothing but the diagonal is written: the caller has zeroed
/// the matrix. n is its smaller dimension; that it fits is not checked. n = 0 does nothing. Raises MessageError if the
/// device can't be asked for its limits.
class Eye {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Eye, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* out, unsigned long rows) const;
  };
};

}  // namespace gpuruntime
