/// @file
/// The distinct elements of a sorted vector.
#pragma once

#include <gpuruntime/build/genericones.hpp>
#include <gpuruntime/elmath/elementwisecompare.hpp>
#include <gpuruntime/recipes/find.hpp>
#include <gpuruntime/recipes/reductions.hpp>

namespace gpuruntime::recipes {

/// The groups of equal neighbours in a vector, which are its distinct elements where it is sorted. Equality is that of
/// ElementwiseCompare: -0 equals 0. NaNs are each a group of their own, or all one group where `nanEqual`.
///
///     Distinct<double> distinct(stream, sorted);
///     DeviceArray<double> values(distinct.count()), starts(distinct.count()), groups(sorted.size());
///     distinct.list(values, starts);
///     distinct.groups(groups);
///
/// The vector has to stay as it is as long as it is asked. That it is sorted is not checked.
template <class T>
class Distinct {
 public:
  /// Bytes that it takes for n elements, as long as it lives.
  static std::size_t workspace(unsigned long n) { return ownBytes(n) + NonZeros<bool>::workspace(n); }

  /// Compares and counts, and waits for the count.
  /// @throws std::invalid_argument if the input is no vector; std::length_error for more than 2^32 elements;
  /// std::bad_alloc if memory is missing; std::runtime_error if the device fails.
  Distinct(CUstream_st* stream, View<const T> sorted, bool nanEqual = false, Allocator& allocator = deviceAllocator())
      : stream_(stream),
        sorted_(checked(std::move(sorted))),
        memory_(allocator, ownBytes(sorted_.size())),
        starts_(stream, flags(nanEqual), allocator) {}

  /// How many groups there are.
  unsigned long count() const noexcept { return starts_.count(); }

  /// Writes the first element of each group and its position in the vector, from 1.
  /// @throws std::invalid_argument unless both hold count() elements.
  void list(View<T> values, View<double> positions) const {
    detail::requireSize("Distinct", "values", values, count());
    detail::requireSize("Distinct", "positions", positions, count());
    if (count() == 0) return;
    starts_.list(positions);
    Subsref3D<const double*, void*, void*>::Invoker<T>()(stream_, count(), values.data(), sorted_.data(),
                                                         sorted_.size(), count(), positions.data(), 1, 1, nullptr, 1, 1,
                                                         nullptr);
  }

  /// Writes the number of the group that each element of the vector is in, from 1.
  /// @throws std::invalid_argument unless `groups` holds as many elements as the vector.
  void groups(View<double> groups) const {
    detail::requireSize("Distinct", "groups", groups, sorted_.size());
    if (sorted_.size() != 0) copyOnDevice(groups.data(), starts_.prefix(), groups.size() * sizeof(double), stream_);
  }

 private:
  static View<const T> checked(View<const T> sorted) {
    detail::requireVector("Distinct", "sorted", sorted);
    return sorted;
  }

  static std::size_t ownBytes(unsigned long n) { return 3 * detail::bytesOf<bool>(n); }

  // True where a group begins: at the first element, and where an element differs from the one before it.
  View<const bool> flags(bool nanEqual) {
    const unsigned long n = sorted_.size();
    if (n == 0) return View<const bool>(nullptr, 0UL);
    bool* const begins = memory_.take<bool>(n);
    bool* const equal = memory_.take<bool>(n);
    bool* const never = memory_.take<bool>(n);
    GenericOnes::Invoker<bool>()(stream_, n, never, false);
    GenericOnes::Invoker<bool>()(stream_, 1, begins, true);
    ElementwiseCompare::Invoker<T, T>()(stream_, n - 1, equal, sorted_.data() + 1, sorted_.data(), nanEqual);
    ElementwiseCompare::Invoker<bool, bool>()(stream_, n - 1, begins + 1, equal, never, false);
    return View<const bool>(begins, n);
  }

  CUstream_st* stream_;
  View<const T> sorted_;
  detail::Temporary memory_;
  NonZeros<bool> starts_;
};

}  // namespace gpuruntime::recipes
