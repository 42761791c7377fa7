/// @file
/// Interpolation on full grids of one to five dimensions, for queries that span a mesh. The rules stand in
/// interptype.hpp.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/interptype.hpp>

#include <vector>

namespace gpuruntime {

/// Queries that span a mesh, in one to five dimensions: the result at column-major place (c0, c1, ...) of a mesh of
/// `querySizes` = the value at (queries[0][c0], queries[1][c1], ...) of an array of `valueSizes` values.
///
/// The vectors have numDimensions entries, or more, which are not looked at. `bins` are those that
/// IndexSearch gives for each dimension, each dimension's behind the one before, whose stretch is rounded up to a
/// multiple of 16 (16 for none).
///
/// Two and three dimensions are calls of Interp2d_CompactQuery and Interp3d_CompactQuery. One is a call of
/// Interp1dFull, with as many queries as all entries of querySizes have as product, which finds bins by itself.
/// For four and five the array of values, and the mesh, have fewer than 2^32 elements, unchecked; the sizes are copied
/// to the device on the stream, so two calls on different streams must not run at the same time. If they can't be
/// copied, or are more than five, the call prints "Interpnd compact query kernel failed to copy querySz to constant
/// memory", or valueSz, and returns. A mesh without points writes nothing. Raises MessageError if the device can't be
/// asked for its limits.
class Interpnd_CompactQuery {
 public:
  template <class GridT, class ValT>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Interpnd_CompactQuery, GridT, RealFloatTypes);
    GPURUNTIME_FAMILY_TAKES(Interpnd_CompactQuery, ValT, FloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, ValT* out, std::vector<const GridT*> grids, const ValT* values,
                                   std::vector<const GridT*> queries, const long long* bins,
                                   const std::vector<unsigned long>& querySizes,
                                   const std::vector<unsigned long>& valueSizes, const ValT& extrapolation,
                                   const InterpType& inRange, const InterpType& outOfRange,
                                   const unsigned long& numDimensions) const;
  };
};

}  // namespace gpuruntime
