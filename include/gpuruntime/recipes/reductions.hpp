/// @file
/// Sums, products and extremes of vectors of any length.
///
/// **Order.** The vector is cut into chunks of chunkLength elements, the last one shorter, and each is reduced as a
/// segment; then their results are, in the same way, until one is left. So the order depends on the length alone, and
/// up to chunkLength elements it is that of the family.
#pragma once

#include <gpuruntime/build/genericones.hpp>
#include <gpuruntime/indexing/subsref.hpp>
#include <gpuruntime/recipes/cumulative.hpp>
#include <gpuruntime/reductions/max.hpp>
#include <gpuruntime/reductions/min.hpp>
#include <gpuruntime/reductions/prod.hpp>
#include <gpuruntime/reductions/sum.hpp>

namespace gpuruntime::recipes {
namespace detail {

/// Elements of all levels of results but the last, which has one.
inline unsigned long partialsOf(unsigned long n) {
  unsigned long count = 0;
  for (unsigned long chunks = chunksOf(n); chunks > 1; chunks = chunksOf(chunks)) count += chunks;
  return count;
}

// `First` reduces the input to results of type R, `Next` those.
template <class First, class Next, class T, class R>
void reduceVector(const char* recipe, CUstream_st* stream, View<R> output, View<const T> input, R ofNothing,
                  Allocator& allocator) {
  requireSize(recipe, "output", output, 1);
  requireVector(recipe, "input", input);
  unsigned long n = input.size();
  if (n == 0) return GenericOnes::Invoker<R>()(stream, 1, output.data(), ofNothing);
  Temporary memory(allocator, bytesOf<R>(partialsOf(n)));
  R* partials = memory.take<R>(partialsOf(n));
  if (n <= chunkLength) return First()(stream, output.data(), input.data(), n, chunkLength, 1);
  First()(stream, partials, input.data(), n, chunkLength, 1);
  for (n = chunksOf(n); n > 1; n = chunksOf(n)) {
    R* const results = n <= chunkLength ? output.data() : partials + n;
    Next()(stream, results, partials, n, chunkLength, 1);
    partials = results;
  }
}

// Levels of values, and of positions in the input.
template <class Extreme, class T>
void extremeOfVector(const char* recipe, CUstream_st* stream, View<T> value, View<double> position, View<const T> input,
                     Allocator& allocator) {
  requireSize(recipe, "value", value, 1);
  requireSize(recipe, "position", position, 1);
  requireVector(recipe, "input", input);
  unsigned long n = input.size();
  if (n == 0) refuse(recipe, "input: expected at least one element, came none");
  if (n <= chunkLength) return Extreme()(stream, value.data(), position.data(), input.data(), n, n, 1, 1);
  const unsigned long count = partialsOf(n);
  Temporary memory(allocator, bytesOf<T>(count) + 2 * bytesOf<double>(count));
  T* values = memory.take<T>(count);
  double* positions = memory.take<double>(count);
  double* const winners = memory.take<double>(count);
  Extreme()(stream, values, positions, input.data(), n, chunkLength, chunksOf(n), 1);
  for (n = chunksOf(n); n > 1; n = chunksOf(n)) {
    const bool isLast = n <= chunkLength;
    const unsigned long chunks = chunksOf(n);
    T* const nextValues = isLast ? value.data() : values + n;
    double* const nextPositions = isLast ? position.data() : positions + n;
    Extreme()(stream, nextValues, winners, values, n, chunkLength, chunks, 1);
    // The winner's place among the results in front is where its position stands.
    Subsref3D<const double*, void*, void*>::Invoker<double>()(stream, chunks, nextPositions, positions, n, chunks,
                                                              winners, 1, 1, nullptr, 1, 1, nullptr);
    values = nextValues;
    positions = nextPositions;
  }
}

template <class T>
constexpr T one() {
  if constexpr (isComplex<T>) {
    return T{1, 0};
  } else {
    return T(1);
  }
}

}  // namespace detail

/// Bytes that sum and product take for n elements of type T.
template <class T>
std::size_t sumWorkspace(unsigned long n) {
  return detail::bytesOf<T>(detail::partialsOf(n));
}

/// `output[0]` = the sum of a vector, in the arithmetic of SumNative<T>; 0 of no elements. T is any element type.
///
/// The array of the one result lies in device memory, as all arrays do, and does not overlap the input, unchecked.
/// @throws std::invalid_argument if the output is not one element or the input is no vector; std::bad_alloc if memory
/// is missing. Nothing is written then.
template <class T>
void sum(CUstream_st* stream, View<T> output, View<const T> input, Allocator& allocator = deviceAllocator()) {
  using Sum = SumNative::Invoker<T>;
  detail::reduceVector<Sum, Sum>("sum", stream, output, input, T{}, allocator);
}

/// The same in `double`, or `double2` of complex T, as SumAsDouble<T> sums: nothing is clamped. Takes
/// sumWorkspace<DoubleOf<T>>(n) bytes.
template <class T>
void sumAsDouble(CUstream_st* stream, View<DoubleOf<T>> output, View<const T> input,
                 Allocator& allocator = deviceAllocator()) {
  detail::reduceVector<SumAsDouble::Invoker<T>, SumNative::Invoker<DoubleOf<T>>>("sumAsDouble", stream, output, input,
                                                                                 DoubleOf<T>{}, allocator);
}

/// `output[0]` = the product of a vector, in the arithmetic of ProdNative<T>; 1 of no elements. As sum() otherwise.
template <class T>
void product(CUstream_st* stream, View<T> output, View<const T> input, Allocator& allocator = deviceAllocator()) {
  using Product = ProdNative::Invoker<T>;
  detail::reduceVector<Product, Product>("product", stream, output, input, detail::one<T>(), allocator);
}

/// The same in `double`, or `double2` of complex T, as ProdAsDouble<T> multiplies.
template <class T>
void productAsDouble(CUstream_st* stream, View<DoubleOf<T>> output, View<const T> input,
                     Allocator& allocator = deviceAllocator()) {
  detail::reduceVector<ProdAsDouble::Invoker<T>, ProdNative::Invoker<DoubleOf<T>>>(
      "productAsDouble", stream, output, input, detail::one<DoubleOf<T>>(), allocator);
}

/// Bytes that minimum and maximum take for n elements of type T.
template <class T>
std::size_t extremeWorkspace(unsigned long n) {
  const unsigned long count = detail::partialsOf(n);
  return detail::bytesOf<T>(count) + 2 * detail::bytesOf<double>(count);
}

/// `value[0]` = the smallest element of a vector, and `position[0]` = the place of the first such element, from 1, in
/// the order of MinWithIndex<T>: NaN counts only where there is nothing else, -0 and +0 are equal. T is a real type, or
/// float2 or double2.
///
/// @throws std::invalid_argument if a result is not one element, or the input is no vector or empty; std::bad_alloc if
/// memory is missing. Nothing is written then.
template <class T>
void minimum(CUstream_st* stream, View<T> value, View<double> position, View<const T> input,
             Allocator& allocator = deviceAllocator()) {
  detail::extremeOfVector<MinWithIndex::Invoker<T>>("minimum", stream, value, position, input, allocator);
}

/// The same with the greatest element, in the order of MaxWithIndex<T>.
template <class T>
void maximum(CUstream_st* stream, View<T> value, View<double> position, View<const T> input,
             Allocator& allocator = deviceAllocator()) {
  detail::extremeOfVector<MaxWithIndex::Invoker<T>>("maximum", stream, value, position, input, allocator);
}

}  // namespace gpuruntime::recipes
