/// @file
/// Recursive and non-recursive filters along any dimension.
#pragma once

#include <gpuruntime/filter/iirfilter.hpp>
#include <gpuruntime/recipes/view.hpp>

#include <algorithm>
#include <utility>

namespace gpuruntime::recipes {

/// The most coefficients that filter() takes in b, or in a.
inline constexpr unsigned long mostCoefficients = FilterOrders::size + 1;

namespace detail {

template <class T, int Order>
void filterOfOrder(unsigned long order, CUstream_st* stream, T* y, T* zf, View<const T> b, View<const T> a, const T* x,
                   const T* zi, const Line& line, bool sharedInitial) {
  if constexpr (Order <= static_cast<int>(FilterOrders::size)) {
    if (order != Order) {
      return filterOfOrder<T, Order + 1>(order, stream, y, zf, b, a, x, zi, line, sharedInitial);
    }
    // Lines side by side, S to a page, or one behind the other.
    const bool isInterleaved = line.S != 1;
    const auto count = [](unsigned long value) { return static_cast<unsigned int>(value); };
    IIRFilter::Invoker<T, mpl_::integral_c<int, Order>>()(stream, y, zf, b.data(), a.data(), x, zi, count(b.size()),
                                                          count(a.size()), count(line.L),
                                                          count(isInterleaved ? line.S : line.O), count(line.S),
                                                          count(isInterleaved ? line.O : 1), sharedInitial ? 1 : 0);
  }
}

template <class T>
void requireCoefficients(const char* which, const View<const T>& coefficients) {
  if (coefficients.size() == 0 || coefficients.size() > mostCoefficients) {
    refuse("filter", std::string(which) + ": expected 1 to " + std::to_string(mostCoefficients) +
                         " coefficients, came " + std::to_string(coefficients.size()) +
                         (coefficients.size() == 0 ? "" : "; convolve() takes long filters without feedback"));
  }
}

}  // namespace detail

/// Number of delay states of a filter: one less than the larger number of coefficients, and at least 1.
inline unsigned long filterStates(unsigned long nb, unsigned long na) {
  return std::max({nb, na, 2UL}) - 1;
}

/// Filters each line of x along a dimension, counted from 0, by b and a, in direct form II transposed:
///
///     a[0] * y(t) = b[0] * x(t) + b[1] * x(t - 1) + ... - a[1] * y(t - 1) - a[2] * y(t - 2) - ...
///
/// in the arithmetic and order of IIRFilter. `T` is `double`, `float`, `double2` or `float2`. y has as many elements as
/// x and may be x itself. b and a lie in device memory, too, and hold 1 to 11 coefficients each.
///
/// `initial` and `last` hold the delay states before and after: filterStates(nb, na) for each line, those of a line
/// side by side, lines in the order of memory. `initial` may also hold the states of one line, for all lines. Either
/// may be empty: initial states are then 0, last ones are not written. Filtering in pieces, with the last states of one
/// as the initial ones of the next, is filtering at once, to the bit.
///
/// Waits for the stream, to look at a[0].
/// @throws std::invalid_argument for another number of coefficients, a[0] = 0, a dimension that x does not have, and
/// arrays of other sizes; std::length_error for 2^32 elements and more. Nothing is written then.
template <class T>
void filter(CUstream_st* stream, View<T> y, View<const T> b, View<const T> a, View<const T> x, std::size_t dimension,
            View<const T> initial = View<const T>(nullptr, 0UL), View<T> last = View<T>(nullptr, 0UL)) {
  detail::requireCoefficients("b", b);
  detail::requireCoefficients("a", a);
  detail::requireSize("filter", "y", y, x.size());
  const detail::Line line = detail::lineAlong("filter", x.extents(), dimension);
  const unsigned long states = filterStates(b.size(), a.size()), all = states * line.S * line.O;
  const bool sharedInitial = initial.size() == states;
  if (initial.size() != 0 && !sharedInitial) detail::requireSize("filter", "initial", initial, all);
  if (last.size() != 0) detail::requireSize("filter", "last", last, all);
  if (x.size() >= 1UL << 32 || line.S * line.O >= 1UL << 32) {
    throw std::length_error("filter: x: expected fewer than 2^32 elements, came " + std::to_string(x.size()));
  }
  T leading{};
  copyToHost(&leading, a.data(), sizeof(T), stream);
  synchronise(stream);
  bool isZero;
  if constexpr (detail::isComplex<T>) {
    isZero = leading.x == 0 && leading.y == 0;
  } else {
    isZero = leading == 0;
  }
  if (isZero) detail::refuse("filter", "a: expected a first coefficient other than 0");
  detail::filterOfOrder<T, 1>(states, stream, y.data(), last.data(), b, a, x.data(), initial.data(), line,
                              sharedInitial);
}

}  // namespace gpuruntime::recipes
