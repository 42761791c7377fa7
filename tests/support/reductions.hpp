/// @file
/// What the tests of reductions share: shapes, data that tells orders apart, and the stated operations one by one.
#pragma once

#include "support/trickyvalues.hpp"

namespace testsupport {

/// N elements in groups of L rows of S.
struct Shape {
  unsigned long N, L, S;

  unsigned long results() const { return N == 0 ? 0 : S == 1 ? (N - 1) / L + 1 : N / (S * L) * S; }
  std::string inWords() const {
    return "N = " + std::to_string(N) + ", L = " + std::to_string(L) + ", S = " + std::to_string(S);
  }
};

/// Segments around the block and its half, short ones in groups and alone, the last one shorter; long enough to be
/// shared among cores; columns around the block; more blocks than a grid dimension holds.
inline std::vector<Shape> reductionShapes(unsigned long elementBytes, bool columnsToo = true) {
  const unsigned long shared = (1UL << 22) / elementBytes + 777;
  std::vector<Shape> shapes{{0, 0, 1}, {0, 5, 1}, {200003, 3, 1}, {100000, 100000, 1}, {shared, shared, 1}};
  for (const unsigned long L :
       {1, 2, 3, 4, 7, 8, 17, 64, 100, 127, 128, 129, 255, 256, 257, 511, 512, 513, 2304, 3000}) {
    shapes.push_back({40 * L - L / 2, L, 1});
    shapes.push_back({L, L, 1});
  }
  if (!columnsToo) return shapes;
  shapes.insert(shapes.end(), {{0, 5, 3}, {280001, 2, 2}, {40 * (shared / 40), shared / 40, 40}});
  for (const unsigned long S : {2, 3, 16, 100, 255, 256, 257, 600}) {
    for (const unsigned long L : {1, 2, 8, 9, 21}) shapes.push_back({3 * S * L + S * L / 2, L, S});
  }
  return shapes;
}

/// Elements whose sums depend on the order: magnitudes far apart and both signs in floating types, any integer. Some
/// runs of seven hold -0 alone.
template <class T>
HostArray<T> summands(unsigned long n) {
  using R = gpuruntime::RealOf<T>;
  HostArray<T> array = HostArray<T>::counting(n);
  if constexpr (std::is_floating_point_v<R>) {
    auto* const parts = reinterpret_cast<R*>(array.data());
    std::mt19937_64 next(n);
    for (unsigned long i = 0; i < n * sizeof(T) / sizeof(R); ++i) {
      const int exponent = static_cast<int>(next() % 40) - 20;
      const R value = std::ldexp(static_cast<R>(next() % 2000) - 1000, exponent);
      parts[i] = i / 7 % 4 == 0 ? R(-0.0) : value;
    }
  }
  return array;
}

/// Elements whose products depend on the order and do not soon leave the range of T.
template <class T>
HostArray<T> factors(unsigned long n) {
  using R = gpuruntime::RealOf<T>;
  HostArray<T> array(n);
  auto* const parts = reinterpret_cast<R*>(array.data());
  std::mt19937_64 next(n);
  for (unsigned long i = 0; i < n; ++i) {
    const double angle = static_cast<double>(next() % 6283) / 1000,
                 size = 0.9 + static_cast<double>(next() % 200) / 1000;
    const long few[] = {1, 1, 1, 3, 1, -2, 7, 1}, small = few[next() % 8];
    if constexpr (isComplex<T>) {
      parts[2 * i] = std::is_integral_v<R> ? static_cast<R>(small) : static_cast<R>(size * std::cos(angle));
      parts[2 * i + 1] = std::is_integral_v<R> ? static_cast<R>(next() % 3) : static_cast<R>(size * std::sin(angle));
    } else {
      array[i] = std::is_integral_v<R> ? static_cast<R>(small) : static_cast<R>(angle < 3 ? size : -size);
    }
  }
  return array;
}

/// Results of `common` elements each, in which here and there, at all positions in turn, stands another one.
template <class T>
HostArray<T> exceptions(const Shape& shape, const T& common, const T& other) {
  const auto [N, L, S] = shape;
  HostArray<T> array(N);
  for (unsigned long i = 0; i < N; ++i) array[i] = common;
  for (unsigned long result = 0; result < shape.results(); result += 3) {
    const unsigned long place = result % S + result / S * S * L + result * 7919 % L * S;
    if (place < N) array[place] = other;
  }
  return array;
}

/// The result of each segment or column by the stated order, an operation at a time.
template <class Acc, class In, class Transform, class Op>
std::vector<Acc> reduceInOrder(const HostArray<In>& in, const Shape& shape, Acc identity, Transform transform, Op op) {
  const auto [N, L, S] = shape;
  std::vector<Acc> results;
  for (unsigned long o = 0; o < shape.results(); ++o) {
    if (S != 1) {
      const unsigned long first = o % S + o / S * S * L;
      Acc value = transform(in[first]);
      for (unsigned long r = 1; r < L; ++r) value = op(value, transform(in[first + r * S]));
      results.push_back(value);
      continue;
    }
    std::vector<Acc> lanes(256, identity);
    for (unsigned long i = o * L, t = 0; i < std::min(N, (o + 1) * L); ++i, ++t) {
      lanes[t % 256] = t < 256 ? transform(in[i]) : op(lanes[t % 256], transform(in[i]));
    }
    for (unsigned long h = 128; h > 0; h /= 2) {
      for (unsigned long t = 0; t < h; ++t) lanes[t] = op(lanes[t], lanes[t + h]);
    }
    results.push_back(lanes[0]);
  }
  return results;
}

/// Calls `reduce(output, input, N, L, S)` and compares; any NaN equals any other.
template <class Acc, class In, class Reduce>
void expectReduced(const HostArray<In>& in, const Shape& shape, const std::vector<Acc>& expected, Reduce reduce) {
  const GuardedArray<In> input(in, 1);
  GuardedArray<Acc> output(expected.size(), 1);
  reduce(output.data(), input.data(), shape.N, shape.L, shape.S);
  HostArray<Acc> actual = output.toHost();
  for (unsigned long i = 0; i < actual.size(); ++i) actual[i] = withPlainNaN(actual[i]);
  expectElements(
      actual, [&](unsigned long i) { return withPlainNaN(Acc(expected[i])); }, shape.inWords());
}

template <class T>
T one() {
  T value{};
  const gpuruntime::RealOf<T> real = 1;
  std::memcpy(&value, &real, sizeof real);
  return value;
}

/// Holds a family that questions its elements against `op` over the answers of `question`, from `identity` on: a one
/// among zeros and a zero among ones at every position, and every tricky value among both.
template <class T, class Acc, class Reduce, class Question, class Op>
void expectAnswers(bool columnsToo, Acc identity, Question question, Op op, Reduce reduce) {
  const auto expectAmong = [&](const Shape& shape, const T& common, const T& other) {
    const HostArray<T> in = exceptions(shape, common, other);
    const auto transform = [&](const T& value) { return static_cast<Acc>(question(answersOf(value))); };
    expectReduced(in, shape, reduceInOrder(in, shape, identity, transform, op), reduce);
  };
  for (const Shape& shape : reductionShapes(sizeof(T), columnsToo)) {
    expectAmong(shape, T{}, one<T>());
    expectAmong(shape, one<T>(), T{});
  }
  const HostArray<T> tricky = trickyValues<T>();
  for (unsigned long i = 0; i < tricky.size(); ++i) {
    for (const Shape& shape : {Shape{50, 3, 1}, Shape{600, 300, 1}, Shape{24, 4, columnsToo ? 3UL : 1UL}}) {
      expectAmong(shape, T{}, tricky[i]);
      expectAmong(shape, one<T>(), tricky[i]);
    }
  }
}

/// The nearest value of T, an integer type, to an exact one.
template <class T>
T clampedTo(__int128 exact) {
  using Limits = std::numeric_limits<T>;
  return static_cast<T>(std::clamp<__int128>(exact, Limits::min(), Limits::max()));
}

/// The element; a `bool` by its byte.
template <class T>
T sameElement(const T& value) {
  if constexpr (std::is_same_v<T, bool>) return exactValue(value) != 0;
  return value;
}

/// The element, part by part, as a double.
template <class T>
gpuruntime::DoubleOf<T> asDouble(const T& value) {
  if constexpr (isComplex<T>) {
    return {static_cast<double>(value.x), static_cast<double>(value.y)};
  } else {
    return static_cast<double>(sameElement(value));
  }
}

}  // namespace testsupport
