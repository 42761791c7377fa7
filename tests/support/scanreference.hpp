/// @file
/// Scans of one dimension as they are stated, one operation after the other, and data that tells their orders apart.
#pragma once

#include "support/trickyvalues.hpp"

namespace testsupport {

struct SumRule {
  template <class T>
  static T identity() {
    return T{};
  }
  template <class T>
  static T apply(const T& a, const T& b) {
    if constexpr (isComplex<T>) {
      return {apply(a.x, b.x), apply(a.y, b.y)};
    } else if constexpr (std::is_floating_point_v<T>) {
      return a + b;
    } else {
      using Limits = std::numeric_limits<T>;
      const __int128 sum = static_cast<__int128>(a) + b;
      return static_cast<T>(std::clamp<__int128>(sum, Limits::min(), Limits::max()));
    }
  }
};

struct ProdRule {
  template <class T>
  static T identity() {
    T one{};
    reinterpret_cast<gpuruntime::RealOf<T>&>(one) = 1;
    return one;
  }
  /// Complex floating factors are finite, and so are their products.
  template <class T>
  static T apply(const T& a, const T& b) {
    if constexpr (isComplex<T>) {
      using R = decltype(T::x);
      if constexpr (std::is_floating_point_v<R>) {
        if (a.y == 0 && b.y == 0) return {a.x * b.x, a.y};
        // Kept apart: g++ 12 turns such products and sums into fused ones, whatever its flags say.
        const volatile R rr = a.x * b.x, ii = a.y * b.y, ri = a.x * b.y, ir = a.y * b.x;
        return {rr - ii, ri + ir};
      } else {
        using Wide = unsigned long long;
        const Wide ax = static_cast<Wide>(a.x), ay = static_cast<Wide>(a.y), bx = static_cast<Wide>(b.x),
                   by = static_cast<Wide>(b.y);
        return {static_cast<R>(ax * bx - ay * by), static_cast<R>(ay * bx + ax * by)};
      }
    } else if constexpr (std::is_floating_point_v<T>) {
      return a * b;
    } else if constexpr (sizeof(T) == 8) {
      return static_cast<T>(static_cast<unsigned long long>(a) * static_cast<unsigned long long>(b));
    } else {
      using Limits = std::numeric_limits<T>;
      return static_cast<T>(std::clamp<__int128>(static_cast<__int128>(a) * b, Limits::min(), Limits::max()));
    }
  }
};

/// A folded dimension: N elements, chunks of L, K of them to a dimension, neighbours S apart.
struct Fold {
  unsigned long N, L, S = 1, K = 1;

  unsigned long results() const { return S == 1 ? (N + L - 1) / L : N / (S * L) * S; }
  std::string inWords() const {
    return "N = " + std::to_string(N) + ", L = " + std::to_string(L) + ", S = " + std::to_string(S) +
           ", K = " + std::to_string(K);
  }
};

/// Segments around a tile and several, short last ones, and enough blocks for a grid of two dimensions; columns around
/// a block and the rows that are taken at once, with an unfinished group behind them; chunks.
inline std::vector<Fold> scanFolds() {
  std::vector<Fold> folds{{100000, 100000}, {131075, 2}, {262149, 2, 2}, {900, 300, 1, 3}};
  for (const unsigned long L : {1, 2, 3, 5, 64, 100, 128, 129, 255, 256, 257, 511, 512, 513, 1024, 2049, 3000}) {
    folds.push_back({L, L});
    folds.push_back({9 * L + L / 2 + 1, L, 1, 3});
  }
  for (const unsigned long S : {2, 127, 128, 129, 300}) {
    for (const unsigned long L : {1, 2, 5, 6, 257}) folds.push_back({7 * L * S + S, L, S, 2});
  }
  return folds;
}

/// Scans a tile of n <= 256 elements as a tree of 256, and returns its total.
template <class Rule, class T>
T scanTile(T* data, unsigned long n) {
  std::vector<T> cells(data, data + n);
  cells.resize(256, Rule::template identity<T>());
  for (int o = 1; o <= 128; o *= 2) {
    for (int t = 0; t < 128 / o; ++t) {
      cells[o * (2 * t + 2) - 1] = Rule::apply(T(cells[o * (2 * t + 1) - 1]), T(cells[o * (2 * t + 2) - 1]));
    }
  }
  const T total = cells[255];
  cells[255] = Rule::template identity<T>();
  for (int o = 128; o >= 1; o /= 2) {
    for (int t = 0; t < 128 / o; ++t) {
      const T old = cells[o * (2 * t + 1) - 1], parent = cells[o * (2 * t + 2) - 1];
      cells[o * (2 * t + 1) - 1] = parent;
      cells[o * (2 * t + 2) - 1] = Rule::apply(parent, old);
    }
  }
  for (unsigned long i = 1; i < n; ++i) data[i - 1] = cells[i];
  data[n - 1] = total;
  return total;
}

template <class Rule, class T>
void scan(T* totals, T* data, const Fold& fold) {
  for (unsigned long result = 0; result < fold.results(); ++result) {
    T* const first = data + result % fold.S + result / fold.S * fold.S * fold.L;
    if (fold.S == 1) {
      const unsigned long live = std::min(fold.L, fold.N - result * fold.L);
      for (unsigned long tile = 0; tile < live; tile += 256) {
        if (tile > 0) first[tile] = Rule::apply(totals[result], first[tile]);
        totals[result] = scanTile<Rule>(first + tile, std::min(256UL, live - tile));
      }
    } else {
      for (unsigned long r = 1; r < fold.L; ++r)
        first[r * fold.S] = Rule::apply(first[(r - 1) * fold.S], first[r * fold.S]);
      totals[result] = first[(fold.L - 1) * fold.S];
    }
  }
}

template <class Rule, class T>
void adjust(const T* adjustments, T* data, const Fold& fold) {
  for (unsigned long i = 0; i < fold.N; ++i) {
    const unsigned long chunk = i / (fold.S * fold.L), result = chunk * fold.S + i % fold.S;
    if (chunk % fold.K == 0 || result >= fold.results()) continue;
    const T adjustment = adjustments[result - fold.S];
    data[i] = fold.S == 1 ? Rule::apply(data[i], adjustment) : Rule::apply(adjustment, data[i]);
  }
}

/// Elements whose sums cancel, clamp and keep the sign of zeros, or whose products do, without leaving the type.
template <class Rule, class T>
HostArray<T> scanData(unsigned long size) {
  constexpr bool isSum = std::is_same_v<Rule, SumRule>;
  using R = gpuruntime::RealOf<T>;
  HostArray<T> array(size);
  std::minstd_rand next(static_cast<unsigned int>(size));
  const auto below = [&](unsigned long n) {
    const unsigned long high = next();
    return (high << 31 | next()) % n;
  };
  for (unsigned long i = 0; i < size; ++i) {
    R parts[2] = {};
    if constexpr (std::is_same_v<T, bool>) {
      parts[0] = (below(200) == 0) == isSum;
    } else if constexpr (isComplex<T> && std::is_floating_point_v<R> && !isSum) {
      // Of magnitude 1; real, with zeros of both signs, in arrays of odd size: there the left factor's zero stays.
      const R turns[][2] = {{R(3) / 5, R(4) / 5}, {R(5) / 13, -R(12) / 13}, {R(15) / 17, R(8) / 17}, {0, 1}};
      const R reals[][2] = {{-1, R(-0.0)}, {1, R(-0.0)}, {-1, 0}, {1, 0}};
      std::copy_n(size % 2 == 1 ? reals[below(4)] : turns[below(4)], 2, parts);
    } else {
      for (R& part : parts) {
        const bool isNegative = std::is_signed_v<R> && below(2) == 0;
        if constexpr (std::is_floating_point_v<R>) {
          const R digits = R(below(1000)), growth = R(0.8) + digits / 5000;
          const int exponent = static_cast<int>(below(60)) - 30;
          part = isSum ? std::ldexp(digits, exponent) : exponent < 0 ? growth : 1 / growth;
        } else {
          const int factors[] = {1, 1, 1, 1, 2, 3};
          part = static_cast<R>(isSum ? below(std::numeric_limits<R>::max() / 3) : factors[below(6)]);
        }
        if (isNegative) part = -part;
      }
    }
    std::memcpy(&array[i], parts, sizeof(T));
  }
  if constexpr (std::is_floating_point_v<R> && (isSum || !isComplex<T>)) {
    auto* const parts = reinterpret_cast<R*>(array.data());
    parts[0] = isSum ? R(-0.0) : -1;
    if (size % 2 == 1) parts[size / 2] = std::numeric_limits<R>::infinity();
    if (size % 4 == 1) parts[size / 4 * 3] = -std::numeric_limits<R>::infinity();
  }
  return array;
}

template <class T>
HostArray<T> withPlainNaNs(HostArray<T> array) {
  for (unsigned long i = 0; i < array.size(); ++i) array[i] = withPlainNaN(array[i]);
  return array;
}

/// The members of Scan and Adjust for T do what Rule says, on every fold.
template <class Scan, class Adjust, class Rule, class T>
void expectScans(const std::vector<Fold>& folds) {
  for (const Fold& fold : folds) {
    SCOPED_TRACE(fold.inWords());
    HostArray<T> data = scanData<Rule, T>(fold.N), totals(fold.results());
    GuardedArray<T> ours(data, 1), ourTotals(totals.size());
    typename Scan::template Invoker<T>()(nullptr, ourTotals.data(), ours.data(), fold.N, fold.L, fold.S);
    scan<Rule>(totals.data(), data.data(), fold);
    expectElements(
        withPlainNaNs(ours.toHost()), [&](unsigned long i) { return withPlainNaN(data[i]); }, "data");
    expectElements(
        withPlainNaNs(ourTotals.toHost()), [&](unsigned long i) { return withPlainNaN(totals[i]); }, "totals");

    HostArray<T> others(totals.size());
    const Fold ofTotals{fold.results(), fold.K, fold.S};
    GuardedArray<T> ourOthers(ofTotals.results());
    typename Scan::template Invoker<T>()(nullptr, ourOthers.data(), ourTotals.data(), ofTotals.N, fold.K, fold.S);
    typename Adjust::template Invoker<T>()(nullptr, ourTotals.data(), ours.data(), fold.N, fold.L, fold.K, fold.S);
    scan<Rule>(others.data(), totals.data(), ofTotals);
    adjust<Rule>(totals.data(), data.data(), fold);
    expectElements(
        withPlainNaNs(ours.toHost()), [&](unsigned long i) { return withPlainNaN(data[i]); }, "adjusted");
  }
}

}  // namespace testsupport
