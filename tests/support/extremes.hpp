/// @file
/// What the tests of minima and maxima share: the stated rules, an element at a time.
#pragma once

#include "gpucommon/ptxmathcomplex.hpp"
#include "support/reductions.hpp"

namespace testsupport {

/// True if a is strictly the better: smaller, or greater; NaN is the worst.
template <bool GREATEST, class T>
bool isBetter(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    namespace scalarmath = gpucommon::scalarmath;
    return GREATEST ? scalarmath::cmaxnancompare(a, b) : scalarmath::cminnancompare(a, b);
  } else {
    return std::isnan(static_cast<double>(b)) ? !std::isnan(static_cast<double>(a)) : GREATEST ? a > b : a < b;
  }
}

/// A value, and its place in the segment or column.
template <class T>
struct Place {
  T value;
  unsigned long index = 0;
};

/// Elements of few different values, so that the best stand at several places: zeros of both signs, NaN, infinities,
/// complex values of one magnitude.
template <class T>
HostArray<T> candidates(unsigned long n) {
  const HostArray<T> tricky = trickyValues<T>();
  HostArray<T> array(n);
  std::mt19937_64 next(n);
  for (unsigned long i = 0; i < n; ++i) {
    // Runs without the infinities and limits among them, which would hide the others.
    const unsigned long known = i / 700 % 2 == 0 ? tricky.size() : std::min(tricky.size(), 6UL);
    array[i] = tricky[next() % known];
    if constexpr (isComplex<T>) {
      const T ofOneMagnitude[] = {{3, 4}, {-4, 3}, {0, 5}, {-5, -0.0}, {3, -4}, {5, 0}};
      if (next() % 4 != 0) array[i] = ofOneMagnitude[next() % 6];
    }
  }
  return array;
}

/// Holds both families of one direction against the rules, over shapes and chunks.
template <class Plain, class WithIndex, bool GREATEST, class T>
void expectExtremes(const Shape& shape, unsigned long K) {
  const auto [N, L, S] = shape;
  const HostArray<T> in = candidates<T>(N);
  const auto pick = [](const Place<T>& a, const Place<T>& b) {
    const bool stays = a.index < b.index ? !isBetter<GREATEST>(b.value, a.value) : isBetter<GREATEST>(a.value, b.value);
    return stays ? a : b;
  };
  const auto better = [](const T& a, const T& b) {
    if constexpr (!isComplex<T>) {
      if (a == b) return std::signbit(static_cast<double>(a)) != GREATEST ? a : b;
    }
    return isBetter<GREATEST>(b, a) ? b : a;
  };
  std::vector<T> best, values;
  std::vector<double> indices;
  for (unsigned long o = 0; o < shape.results(); ++o) {
    const unsigned long first = S == 1 ? o * L : o % S + o / S * S * L;
    const unsigned long length = S == 1 ? std::min(N - first, L) : L, lanes = S == 1 ? 256 : 1;
    std::vector<Place<T>> places;
    std::vector<T> plain;
    for (unsigned long r = 0; r < length; ++r) {
      const T element = in[first + r * S];
      if (r < lanes) {
        places.push_back({element, r});
        plain.push_back(element);
      } else {
        places[r % lanes] = pick(places[r % lanes], {element, r});
        plain[r % lanes] = better(plain[r % lanes], element);
      }
    }
    for (unsigned long h = lanes / 2; h > 0; h /= 2) {
      for (unsigned long t = 0; t < h && t + h < places.size(); ++t) {
        places[t] = pick(places[t], places[t + h]);
        plain[t] = better(plain[t], plain[t + h]);
      }
    }
    best.push_back(plain[0]);
    values.push_back(places[0].value);
    indices.push_back(static_cast<double>(o / S % K * L + places[0].index + 1));
  }
  expectReduced(in, shape, best,
                [](auto... arguments) { typename Plain::template Invoker<T>()(nullptr, arguments...); });
  const GuardedArray<T> input(in, 1);
  GuardedArray<T> valuesOut(best.size(), 1);
  GuardedArray<double> indicesOut(best.size(), 1);
  typename WithIndex::template Invoker<T>()(nullptr, valuesOut.data(), indicesOut.data(), input.data(), N, L, K, S);
  expectElements(
      valuesOut.toHost(), [&](unsigned long i) { return T(values[i]); }, shape.inWords());
  expectElements(
      indicesOut.toHost(), [&](unsigned long i) { return indices[i]; }, shape.inWords());
}

}  // namespace testsupport
