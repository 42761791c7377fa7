/// @file
/// Positions, subscripts and values of the elements that are not 0.
#pragma once

#include <gpuruntime/elmath/flagnonzero.hpp>
#include <gpuruntime/indexing/find.hpp>
#include <gpuruntime/recipes/cumulative.hpp>

#include <algorithm>

namespace gpuruntime::recipes {

/// The elements of an array that are not 0, as FlagNonZero has it: NaN is not 0, -0 is. Counted once, then listed as
/// often as wanted, first or last ones, in the order of memory.
///
///     NonZeros<float> found(stream, matrix);
///     DeviceArray<double> positions(found.count());
///     found.list(positions);                                 all of them
///     found.list(firstThree);                                a shorter array takes the first ones
///     found.list(rows, columns, FindFirstLast::last)         or the last ones
///
/// The array has to stay as it is as long as it is asked. Positions, rows and columns count from 1. An array of more
/// than two dimensions has the trailing ones folded into its columns. Outputs overlap neither each other nor the input,
/// unchecked.
template <class T>
class NonZeros {
 public:
  /// Bytes that it takes for n elements, as long as it lives.
  static std::size_t workspace(unsigned long n) {
    return n == 0 ? 0
                  : detail::bytesOf<double>(n) + detail::bytesOf<double>(detail::SumScan<double>::totalsOf({1, n, 1}));
  }

  /// Counts, and waits for the count.
  /// @throws std::length_error for more than 2^32 elements; std::bad_alloc if memory is missing; std::runtime_error if
  /// the device fails.
  NonZeros(CUstream_st* stream, View<const T> input, Allocator& allocator = deviceAllocator())
      : stream_(stream), input_(allowed(std::move(input))), memory_(allocator, workspace(input_.size())) {
    const unsigned long n = input_.size();
    if (n == 0) return;
    double* const prefix = memory_.take<double>(n);
    prefix_ = prefix;
    FlagNonZero::Invoker<T>()(stream_, prefix, input_.data(), n);
    const detail::Line line{1, n, 1};
    detail::SumScan<double>::run(stream_, prefix, memory_.take<double>(detail::SumScan<double>::totalsOf(line)), line);
    double total = 0;
    copyToHost(&total, prefix + n - 1, sizeof(total), stream_);
    synchronise(stream_);
    count_ = static_cast<unsigned long>(total);
  }

  /// How many elements are not 0.
  unsigned long count() const noexcept { return count_; }

  /// The running count, an entry for each element of the input, as long as this object lives: what Find1D takes, and
  /// the number of the group that an element of a sorted array is in. Null for an empty input.
  const double* prefix() const noexcept { return prefix_; }

  /// Writes the positions of the first or the last elements, as many as `positions` holds or as there are, and returns
  /// how many that is.
  unsigned long list(View<double> positions, FindFirstLast which = FindFirstLast::first) const {
    const unsigned long listed = std::min(positions.size(), count_);
    if (listed != 0) {
      Find1D::Invoker<T>()(stream_, positions.data(), input_.data(), prefix_, listed, input_.size(), which);
    }
    return listed;
  }

  /// The same with rows and columns.
  /// @throws std::invalid_argument unless both hold as many elements.
  unsigned long list(View<double> rows, View<double> columns, FindFirstLast which = FindFirstLast::first) const {
    detail::requireSize("NonZeros", "columns", columns, rows.size());
    const unsigned long listed = std::min(rows.size(), count_);
    if (listed != 0) {
      Find2D::Invoker<T>()(stream_, rows.data(), columns.data(), input_.data(), prefix_, listed, input_.extent(0),
                           input_.size() / input_.extent(0), which);
    }
    return listed;
  }

  /// The same with the elements themselves.
  unsigned long list(View<double> rows, View<double> columns, View<T> values,
                     FindFirstLast which = FindFirstLast::first) const {
    detail::requireSize("NonZeros", "columns", columns, rows.size());
    detail::requireSize("NonZeros", "values", values, rows.size());
    const unsigned long listed = std::min(rows.size(), count_);
    if (listed != 0) {
      Find2DWithValue::Invoker<T>()(stream_, rows.data(), columns.data(), values.data(), input_.data(), prefix_, listed,
                                    input_.extent(0), input_.size() / input_.extent(0), which);
    }
    return listed;
  }

 private:
  static View<const T> allowed(View<const T> input) {
    if (input.size() > 1UL << 32) {
      throw std::length_error("NonZeros: input: expected at most 2^32 elements, came " + std::to_string(input.size()));
    }
    return input;
  }

  CUstream_st* stream_;
  View<const T> input_;
  detail::Temporary memory_;
  const double* prefix_ = nullptr;
  unsigned long count_ = 0;
};

}  // namespace gpuruntime::recipes
