/// @file
/// Interpolation on grids of one to five dimensions, with the grids checked. Methods, bins and values are those of
/// interptype.hpp.
#pragma once

#include <gpuruntime/interp/checkInfNaNAndStrongSortKernel.hpp>
#include <gpuruntime/interp/copyToVector.hpp>
#include <gpuruntime/interp/indexSearch.hpp>
#include <gpuruntime/interp/interpnd_compactQuery_colonGrid.hpp>
#include <gpuruntime/interp/interpnd_compactQuery_fullGrid.hpp>
#include <gpuruntime/interp/interpnd_nonCompactQuery_colonGrid.hpp>
#include <gpuruntime/interp/interpnd_nonCompactQuery_fullGrid.hpp>
#include <gpuruntime/interp/verifyCartesianGrid.hpp>
#include <gpuruntime/recipes/allocator.hpp>
#include <gpuruntime/recipes/view.hpp>

namespace gpuruntime::recipes {

/// What the queries mean: a mesh of all combinations, or points one by one.
enum class Queries { mesh, scattered };

/// How values come about. Without more, linear within the grid and NaN outside of it.
template <class T>
struct InterpolationRules {
  InterpType within = InterpTypeLinear;
  InterpType outside = InterpTypeConstant;
  T extrapolation = notANumber();  ///< What stands outside the grid by InterpTypeConstant.

 private:
  static constexpr T notANumber() {
    constexpr RealOf<T> nan = std::numeric_limits<RealOf<T>>::quiet_NaN();
    if constexpr (detail::isComplex<T>) {
      return T{nan, nan};
    } else {
      return nan;
    }
  }
};

/// Views of constant arrays, one for each dimension.
template <class T>
using Views = std::vector<View<const T>>;

namespace detail {

inline constexpr unsigned long mostInterpolated = (1UL << 32) - 1;

// Elements that the bins of a mesh take: each dimension's stretch ends at a multiple of 16.
inline unsigned long binStretch(unsigned long queries) {
  return queries == 0 ? 16 : (queries + 15) / 16 * 16;
}

template <class GridT>
void requireGrid(CUstream_st* stream, const View<const GridT>& grid, unsigned long points, std::size_t dimension) {
  const std::string name = "grid " + std::to_string(dimension + 1);
  requireSize("interpolate", name.c_str(), grid, points);
  const auto [hasNoNumber, isUnordered] =
      CheckInfNaNAndStrictlyIncreasing::Invoker<GridT>()(stream, grid.data(), grid.size());
  if (hasNoNumber) refuse("interpolate", name + ": expected finite points, came a NaN or an infinite one");
  if (isUnordered) refuse("interpolate", name + ": expected strictly increasing points, came others");
}

template <class T>
std::vector<const T*> pointersOf(const Views<T>& views) {
  std::vector<const T*> pointers;
  for (const View<const T>& view : views) pointers.push_back(view.data());
  return pointers;
}

inline void requireRules(InterpType within, InterpType outside) {
  if (within != InterpTypeLinear && within != InterpTypeNearest) {
    refuse("interpolate", "within: expected InterpTypeLinear or InterpTypeNearest");
  }
  if (outside != InterpTypeLinear && outside != InterpTypeNearest && outside != InterpTypeConstant) {
    refuse("interpolate", "outside: expected one of the three methods");
  }
}

template <class GridT, class ValT>
void requireShapes(const View<ValT>& output, const Views<GridT>& grids, const View<const ValT>& values,
                   const Views<GridT>& queries, Queries form) {
  const std::size_t dimensions = queries.size();
  const auto fewElements = [](const char* array, unsigned long count) {
    if (count > mostInterpolated) {
      throw std::length_error("interpolate: " + std::string(array) + ": expected fewer than 2^32 elements, came " +
                              std::to_string(count));
    }
  };
  if (dimensions < 1 || dimensions > 5) {
    refuse("interpolate", "queries: expected 1 to 5 dimensions, came " + std::to_string(dimensions));
  }
  if (!grids.empty() && grids.size() != dimensions) {
    refuse("interpolate",
           "grids: expected none or " + std::to_string(dimensions) + ", came " + std::to_string(grids.size()));
  }
  if (dimensions == 1 ? !values.isVector() : values.extents().size() != dimensions) {
    refuse("interpolate",
           "values: expected " + std::to_string(dimensions) + " dimensions, came " + inWords(values.extents()));
  }
  for (std::size_t i = 0; i < dimensions; ++i) {
    const unsigned long points = dimensions == 1 ? values.size() : values.extent(i);
    if (points < 2) {
      refuse("interpolate", "values: expected at least 2 along each dimension, came " + inWords(values.extents()));
    }
    if (form == Queries::scattered) requireSize("interpolate", "queries", queries[i], queries[0].size());
  }
  Extents mesh;
  for (const auto& query : queries) mesh.push_back(query.size());
  requireSize("interpolate", "output", output, form == Queries::mesh ? product(mesh) : queries[0].size());
  fewElements("values", values.size());
  fewElements("output", output.size());
}

}  // namespace detail

/// Writes the vector that a full array of coordinates, as for a mesh, repeats along dimension `dimension`, counted from
/// 0, and checks that it repeats nothing else. `vector` has the extent of that dimension.
///
/// Waits for the check, on the default stream, for which the stream must wait.
/// @throws std::invalid_argument for more than five dimensions, a dimension that the array does not have, a vector of
/// another size, all of which write nothing; and where the array is no grid, with the vector written.
template <class T>
void gridVector(CUstream_st* stream, View<T> vector, View<const T> full, std::size_t dimension) {
  const detail::Line line = detail::lineAlong("gridVector", full.extents(), dimension);
  const unsigned long dimensions = full.extents().size();
  if (dimensions > 5)
    detail::refuse("gridVector", "full: expected at most 5 dimensions, came " + std::to_string(dimensions));
  detail::requireSize("gridVector", "vector", vector, line.L);
  if (full.size() == 0) return;
  CopyToVector::Invoker<T>()(stream, vector.data(), full.data(), dimension, full.extents().data(), dimensions,
                             full.size());
  if (!VerifyNDCartesianGrid::Invoker<T>()(stream, full.data(), vector.data(), dimension, full.extents().data(),
                                           dimensions)) {
    detail::refuse("gridVector", "full: expected one vector repeated along dimension " + std::to_string(dimension) +
                                     ", came other coordinates");
  }
}

/// Bytes that interpolate takes: the bins of a mesh of queries.
inline std::size_t interpolateWorkspace(const Extents& queryCounts, Queries form) {
  if (form == Queries::scattered || queryCounts.size() < 2) return 0;
  unsigned long bins = 0;
  for (const unsigned long count : queryCounts) bins += detail::binStretch(count);
  return detail::bytesOf<long long>(bins);
}

/// Interpolates an array of values on a grid of one to five dimensions.
///
///     Queries::mesh        output(c0, c1, ...) = the value at (queries[0](c0), queries[1](c1), ...)
///     Queries::scattered   output(i)           = the value at (queries[0](i), queries[1](i), ...)
///
/// There are as many vectors of queries as dimensions. `grids` holds as many vectors, of as many points as the values
/// have along their dimension; none at all stand for the grids 1, 2, ..., n. The output holds the elements of the mesh,
/// or as many as there are queries. `GridT` is `double` or `float`, `ValT` these or `double2` or `float2`. What a query
/// outside of the grid, or NaN, gives stands in interptype.hpp.
///
/// Waits for the checks of the grids, on the default stream, for which the stream must wait. Calls on different streams
/// must not overlap. The output overlaps no input, unchecked.
/// @throws std::invalid_argument for grids that are not finite and strictly increasing, and for counts and methods that
/// do not fit; std::length_error for 2^32 values or results and more; std::bad_alloc if memory is missing. Nothing is
/// written then.
template <class GridT, class ValT>
void interpolate(CUstream_st* stream, View<ValT> output, const Views<GridT>& grids, View<const ValT> values,
                 const Views<GridT>& queries, Queries form,
                 const InterpolationRules<ValT>& rules = InterpolationRules<ValT>(),
                 Allocator& allocator = deviceAllocator()) {
  detail::requireRules(rules.within, rules.outside);
  detail::requireShapes(output, grids, values, queries, form);
  const unsigned long dimensions = queries.size();
  const Extents points = dimensions == 1 ? Extents{values.size()} : values.extents();
  for (std::size_t i = 0; i < grids.size(); ++i) detail::requireGrid(stream, grids[i], points[i], i);
  if (output.size() == 0) return;
  const auto gridPointers = detail::pointersOf(grids), queryPointers = detail::pointersOf(queries);
  ValT* const out = output.data();

  if (form == Queries::scattered) {
    if (grids.empty()) {
      return Interpnd_NonCompactQuery_ColonGrid::Invoker<GridT, ValT>()(stream, out, values.data(), queryPointers,
                                                                        points, output.size(), rules.extrapolation,
                                                                        rules.within, rules.outside, dimensions);
    }
    return Interpnd_NonCompactQuery::Invoker<GridT, ValT>()(stream, out, gridPointers, values.data(), queryPointers,
                                                            points, output.size(), rules.extrapolation, rules.within,
                                                            rules.outside, dimensions);
  }

  Extents counts;
  for (const auto& query : queries) counts.push_back(query.size());
  const std::size_t bytes = interpolateWorkspace(counts, form);
  detail::Temporary memory(allocator, bytes);
  long long* const bins = memory.template take<long long>(bytes / sizeof(long long));
  unsigned long offset = 0;
  // In one dimension the family finds the bins itself.
  for (std::size_t i = 0; i < dimensions && dimensions > 1; offset += detail::binStretch(counts[i]), ++i) {
    if (grids.empty()) {
      IndexSearch_ColonGrid::Invoker<GridT>()(stream, bins, offset, queryPointers[i], points[i], counts[i]);
    } else {
      IndexSearch::Invoker<GridT>()(stream, bins, offset, gridPointers[i], queryPointers[i], points[i], counts[i]);
    }
  }
  if (grids.empty()) {
    return Interpnd_CompactQuery_ColonGrid::Invoker<GridT, ValT>()(stream, out, values.data(), queryPointers, bins,
                                                                   counts, points, rules.extrapolation, rules.within,
                                                                   rules.outside, dimensions);
  }
  Interpnd_CompactQuery::Invoker<GridT, ValT>()(stream, out, gridPointers, values.data(), queryPointers, bins, counts,
                                                points, rules.extrapolation, rules.within, rules.outside, dimensions);
}

}  // namespace gpuruntime::recipes
