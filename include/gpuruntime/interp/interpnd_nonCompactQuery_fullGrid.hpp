/// @file
/// Interpolation on full grids of one to five dimensions, for scattered queries. The rules stand in interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

#include <vector>

namespace gpuruntime {

/// Queries of one common length, in one to five dimensions: `out[i]` = the value at (queries[0][i], queries[1][i], ...)
/// of an array of `valueSizes` values, 0 <= i < queryCount, with bins found on the way.
///
/// The vectors have numDimensions entries, or more, which are not looked at. The order of the queries changes no
/// result. queryCount is below 2^32, unchecked.
///
/// One dimension is a call of Interp1dFull, two and three are calls of Interp2d_NonCompactQuery and
/// Interp3d_NonCompactQuery. For four and five the array of values has fewer than 2^32 elements, unchecked; the
/// sizes are copied to the device on the stream, so two calls on different streams must not run at the same time. If
/// they can't be copied, or are more than five, the call prints "Interpnd Noncompact query kernel failed to copy
/// valueSz to constant memory" and returns. No query writes nothing. Raises MessageError if the device can't be asked
/// for its limits.
class Interpnd_NonCompactQuery {
 public:
  template <class GridT, class ValT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interpnd_NonCompactQuery, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interpnd_NonCompactQuery, ValT, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ValT* out, std::vector<const GridT*> grids, const ValT* values,
                                   std::vector<const GridT*> queries, const std::vector<unsigned long>& valueSizes,
                                   const unsigned long& queryCount, const ValT& extrapolation,
                                   const InterpType& inRange, const InterpType& outOfRange,
                                   const unsigned long& numDimensions) const;
  };
};

}  // namespace gpuruntime
