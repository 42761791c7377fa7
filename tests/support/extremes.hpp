/// @file
/// What the tests of minima and maxima share: the stated rules, an element at a time.
#pragma once

#include "support/complexorder.hpp"
#include "support/reductions.hpp"

namespace testsupport {

/// True if a is strictly the better: smaller, or greater; a NaN magnitude is the worst.
template <bool GREATEST, class T>
bool isBetter(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    const auto isNaN = [](const T& z) { return std::isnan(std::hypot(z.x, z.y)); };
    return !isNaN(a) && (isNaN(b) || complexOrder(a, b) == (GREATEST ? -1 : 1));
  } else {
    return std::isnan(static_cast<double>(b)) ? !std::isnan(static_cast<double>(a)) : GREATEST ? a > b : a < b;
  }
}

/// The element; of a `bool`, whose byte may be any, whether it is not 0.
template <class T>
T truthOf(const T& element) {
  if constexpr (std::is_same_v<T, bool>) {
    return reinterpret_cast<const unsigned char&>(element) != 0;
  } else {
    return element;
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
  HostArray<T> few = trickyValues<T>(), array(n);
  if constexpr (isComplex<T>) {
    using Limits = std::numeric_limits<gpuruntime::RealOf<T>>;
    constexpr auto inf = Limits::infinity(), NaN = Limits::quiet_NaN(), most = Limits::max();
    few = arrayOf(std::vector<T>{{3, 4},
                                 {-4, 3},
                                 {0, 5},
                                 {-5, -0.0f},
                                 {3, -4},
                                 {5, 0},
                                 {1, NaN},
                                 {-0.0f, 0},
                                 {inf, NaN},
                                 {0, -inf},
                                 {most, most},
                                 {most, most / 2},
                                 {NaN, NaN}});
  }
  std::mt19937_64 next(n);
  for (unsigned long i = 0; i < n; ++i) {
    // Runs without the infinities and limits, which would hide the others.
    std::memcpy(&array[i], &few[next() % (i / 700 % 2 == 0 ? few.size() : std::min(few.size(), 6UL))], sizeof(T));
  }
  return array;
}

/// Complex elements of 64 nearly equal magnitudes, which differ by more than roundings alone, each at an angle of its
/// own; in runs of several scales, some with squares outside of the range of the type.
template <class T>
HostArray<T> nearlyEqual(unsigned long n) {
  using R = gpuruntime::RealOf<T>;
  const int far = std::numeric_limits<R>::max_exponent - 2, near = sizeof(R) == 8 ? -45 : -18;
  const int exponents[] = {0, 3, far / 2 - 1, far / 2 + 2, far, 2, -2, -far / 2 - 20, 20 - far, 0};
  HostArray<T> array(n);
  std::mt19937_64 next(n);
  for (unsigned long i = 0; i < n; ++i) {
    const int k = static_cast<int>(next() % 64);
    const double size = std::ldexp(1 + k * std::ldexp(1.0, near), exponents[i * 10 / n]);
    array[i] = T{static_cast<R>(std::cos(k) * size), static_cast<R>(std::sin(k) * size)};
  }
  return array;
}

/// Holds both families of one direction against the rules.
template <class Plain, class WithIndex, bool GREATEST, class T>
void expectExtremes(const Shape& shape, unsigned long K, const HostArray<T>& in) {
  const auto [N, L, S] = shape;
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
      const T element = truthOf(in[first + r * S]);
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

/// The same over the candidates for extremes.
template <class Plain, class WithIndex, bool GREATEST, class T>
void expectExtremes(const Shape& shape, unsigned long K) {
  expectExtremes<Plain, WithIndex, GREATEST, T>(shape, K, candidates<T>(shape.N));
}

}  // namespace testsupport
