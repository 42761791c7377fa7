/// @file
/// Interpolation by the rules, one query at a time: what the families are held against.
#pragma once

#include "support/familytest.hpp"

namespace testsupport {

using gpuruntime::InterpType;
using gpuruntime::RealOf;

struct MethodPair {
  InterpType inRange, outOfRange;
};

inline const MethodPair methodPairs[] = {
    {gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeLinear},
    {gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeNearest},
    {gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant},
    {gpuruntime::InterpTypeNearest, gpuruntime::InterpTypeLinear},
    {gpuruntime::InterpTypeNearest, gpuruntime::InterpTypeNearest},
    {gpuruntime::InterpTypeNearest, gpuruntime::InterpTypeConstant},
};

inline std::string inWords(const MethodPair& methods) {
  return "methods " + std::to_string(methods.inRange) + ", " + std::to_string(methods.outOfRange);
}

template <class T>
long long referenceBin(const std::vector<T>& grid, T q) {
  if (std::isnan(q)) return -20;
  if (q < grid.front()) return -1;
  if (q > grid.back()) return -10;
  long long bin = std::upper_bound(grid.begin(), grid.end(), q) - grid.begin() - 1;
  return std::min(bin, static_cast<long long>(grid.size()) - 2);
}

/// A grid along one dimension: points, or the colon grid of so many. `first` moves a colon grid's coordinates.
template <class T>
struct TestGrid {
  std::vector<T> points;
  bool isColon = false;
  double first = 1;

  unsigned long size() const { return points.size(); }
  long long bin(T q) const { return referenceBin(points, q); }
};

template <class T>
TestGrid<T> colonGrid(unsigned long n, double first = 1) {
  TestGrid<T> grid{std::vector<T>(n), true, first};
  for (unsigned long i = 0; i < n; ++i) grid.points[i] = static_cast<T>(i + 1);
  return grid;
}

enum class Spacing { even, geometric, random };

template <class T>
TestGrid<T> fullGrid(unsigned long n, Spacing spacing) {
  TestGrid<T> grid{std::vector<T>(n)};
  std::minstd_rand next(static_cast<unsigned int>(n));
  T point = T(-1.5);
  for (T& entry : grid.points) {
    entry = point;
    const double step = spacing == Spacing::even ? 0.25 : (spacing == Spacing::geometric ? 1.7 : 1 + next() % 1000);
    point = static_cast<T>(spacing == Spacing::geometric ? (point + 2) * step - 2 : point + step);
  }
  return grid;
}

/// Queries on points, around them, halfway, outside, infinite, NaN and in between, or only those within the grid; then
/// sorted, or not.
template <class T>
std::vector<T> trickyQueries(const TestGrid<T>& grid, unsigned long count, bool isSorted, bool isInside = false) {
  constexpr T infinity = std::numeric_limits<T>::infinity(), missing = std::numeric_limits<T>::quiet_NaN();
  const T low = grid.points.front(), high = grid.points.back();
  std::vector<T> queries{low, high, -infinity, infinity, missing, low - T(0.75), high + T(1.5), -T(0)};
  if (isInside) queries.resize(2);
  std::minstd_rand next(7);
  while (queries.size() < count) {
    const unsigned long b = next() % (grid.size() - 1);
    const T left = grid.points[b], right = grid.points[b + 1];
    const unsigned int kind = next() % 8;
    switch (isInside && (kind == 4 || kind == 5) ? 6 : kind) {
      case 0:
        queries.push_back(left);
        break;
      case 1:
        queries.push_back(std::nextafter(right, left));
        break;
      case 2:
        queries.push_back(isInside ? right : std::nextafter(right, infinity));
        break;
      case 3:
        queries.push_back(left + (right - left) / 2);
        break;
      case 4:
        queries.push_back(low - static_cast<T>(next() % 100) / 16);
        break;
      case 5:
        queries.push_back(high + static_cast<T>(next() % 100) / 16);
        break;
      default:
        queries.push_back(left + (right - left) * (static_cast<T>(next() % 4096) / 4096));
    }
  }
  queries.resize(count);
  // NaN in their midst: a sort by number must not meet them.
  if (isSorted) {
    std::sort(queries.begin(), queries.end(), [](T a, T b) { return a < b || (std::isnan(b) && !std::isnan(a)); });
    if (count > 40 && !isInside) queries[count / 2] = missing;
  }
  return queries;
}

/// A few infinities and NaN among values of both signs.
template <class V>
std::vector<V> trickyValuesOfGrid(unsigned long count, bool isFinite = false) {
  using R = RealOf<V>;
  std::minstd_rand next(11);
  const auto part = [&] {
    const unsigned int kind = isFinite ? 99 : next() % 40;
    if (kind < 2) return std::numeric_limits<R>::infinity() * (kind == 0 ? R(1) : R(-1));
    if (kind == 2) return std::numeric_limits<R>::quiet_NaN();
    if (kind == 3) return -R(0);
    return static_cast<R>((static_cast<double>(next() % 20011) - 10000.0) / 97.0);
  };
  std::vector<V> values(count);
  for (V& value : values) {
    if constexpr (isComplex<V>) {
      value.x = part();
      value.y = part();
    } else {
      value = part();
    }
  }
  return values;
}

template <class R, class V, class C>
R referenceLinear(V lo, V hi, C t) {
  // Products and sums one by one, and kept from being joined.
  const volatile double u = 1.0 - static_cast<double>(t);
  if (std::is_same_v<V, double>) {
    const volatile double product = static_cast<double>(hi) * static_cast<double>(t);
    return static_cast<R>(std::fma(static_cast<double>(lo), u, product));
  }
  const volatile double lower = static_cast<double>(lo) * u, upper = static_cast<double>(hi) * static_cast<double>(t);
  const volatile float a = static_cast<float>(lower), c = static_cast<float>(upper);
  if (std::is_same_v<C, float>) {
    return static_cast<R>(std::fma(static_cast<float>(hi), static_cast<float>(t), static_cast<float>(a)));
  }
  return static_cast<R>(a + c);
}

template <class T>
bool isNaN(const T& value) {
  if constexpr (isComplex<T>) {
    return std::isnan(value.x) || std::isnan(value.y);
  } else {
    return std::isnan(value);
  }
}
template <class T>
bool isInfinite(const T& value) {
  if constexpr (isComplex<T>) {
    return std::isinf(value.x) || std::isinf(value.y);
  } else {
    return std::isinf(value);
  }
}

template <class R, class V>
R roundedTo(const V& value) {
  if constexpr (isComplex<V>) {
    return {static_cast<RealOf<R>>(value.x), static_cast<RealOf<R>>(value.y)};
  } else {
    return static_cast<R>(value);
  }
}

/// One NaN for all: out of arithmetic their bits are the machine's.
template <class T>
T plainNaN(T value) {
  if constexpr (isComplex<T>) {
    return {plainNaN(value.x), plainNaN(value.y)};
  } else {
    return value != value ? std::numeric_limits<T>::quiet_NaN() : value;
  }
}

template <class R>
R missing() {
  if constexpr (isComplex<R>) {
    return {missing<RealOf<R>>(), missing<RealOf<R>>()};
  } else {
    return std::copysign(std::numeric_limits<R>::quiet_NaN(), R(-1));
  }
}

/// The value of a query in a bin between two values; C is the type of the arithmetic on coordinates.
template <class C, class R, class V, class T>
R referenceBetween(const TestGrid<T>& grid, T q, long long bin, V left, V right, MethodPair methods, R extrapolation) {
  const long long last = static_cast<long long>(grid.size()) - 2;
  const bool isInside = bin >= 0 && bin <= last;
  if (!isInside && bin != -1 && bin != -10) return missing<R>();
  const InterpType method = isInside ? methods.inRange : methods.outOfRange;
  if (method == gpuruntime::InterpTypeConstant) return extrapolation;
  const R lo = roundedTo<R>(left), hi = roundedTo<R>(right);
  const long long b = isInside ? bin : (bin == -1 ? 0 : last);
  const auto point = [&](long long i) {
    if (grid.isColon) return static_cast<C>(grid.first + static_cast<double>(i));
    return static_cast<C>(grid.points[static_cast<unsigned long>(i)]);
  };
  const C at = static_cast<C>(q), toLower = at - point(b), toUpper = point(b + 1) - at;
  if (method == gpuruntime::InterpTypeNearest) {
    if (!isInside) return bin == -1 ? lo : hi;
    return toUpper > toLower ? lo : hi;
  }
  const volatile C reciprocal = C(1) / (point(b + 1) - point(b));
  const C t = grid.isColon ? toLower : toLower * reciprocal;
  R result;
  if constexpr (isComplex<R>) {
    result = {referenceLinear<RealOf<R>>(left.x, right.x, t), referenceLinear<RealOf<R>>(left.y, right.y, t)};
  } else {
    result = referenceLinear<R>(left, right, t);
  }
  if (!isNaN(result)) return result;
  if (isInfinite(lo)) result = hi;
  if (isInfinite(hi)) result = lo;
  return result;
}

/// The value of a query of as many dimensions as there are grids, with these bins.
template <class R, class V, class T>
R referenceValue(const std::vector<TestGrid<T>>& grids, const V* values, const std::vector<T>& q,
                 const std::vector<long long>& bins, MethodPair methods, R extrapolation, unsigned long dimensions) {
  const unsigned long d = dimensions - 1;
  unsigned long stride = 1;
  for (unsigned long k = 0; k < d; ++k) stride *= grids[k].size();
  const long long last = static_cast<long long>(grids[d].size()) - 2;
  if (bins[d] < -10 || bins[d] > last) return missing<R>();
  const auto b = static_cast<unsigned long>(bins[d] == -1 ? 0 : (bins[d] == -10 ? last : bins[d]));
  const auto between = [&](auto left, auto right) {
    return grids[d].isColon ? referenceBetween<double, R>(grids[d], q[d], bins[d], left, right, methods, extrapolation)
                            : referenceBetween<T, R>(grids[d], q[d], bins[d], left, right, methods, extrapolation);
  };
  const V* const slab = values + b * stride;
  if (d == 0) return between(slab[0], slab[1]);
  return between(referenceValue<R>(grids, slab, q, bins, methods, extrapolation, d),
                 referenceValue<R>(grids, slab + stride, q, bins, methods, extrapolation, d));
}

/// A device array of a vector's elements.
template <class T>
GuardedArray<T> onDevice(const std::vector<T>& values) {
  HostArray<T> host(values.size());
  if (!values.empty()) std::memcpy(host.data(), values.data(), values.size() * sizeof(T));
  return GuardedArray<T>(host);
}

/// A value that no line holds, with a NaN whose bits must stay.
template <class R>
R extrapolationValue(bool isOdd) {
  using Part = RealOf<R>;
  const Part odd = isOdd ? std::copysign(std::numeric_limits<Part>::signaling_NaN(), Part(-1)) : Part(0.1);
  if constexpr (isComplex<R>) {
    return {odd, Part(-7.3)};
  } else {
    return odd;
  }
}

/// What a call is to give: values, and which of them were not computed, so that a NaN has its bits as well.
template <class R, class T>
struct ExpectedValues {
  std::vector<R> values;
  std::vector<bool> isMoved;

  template <class V>
  void add(const std::vector<TestGrid<T>>& grids, const V* line, const std::vector<T>& q,
           const std::vector<long long>& bins, MethodPair methods, R extrapolation) {
    values.push_back(referenceValue<R>(grids, line, q, bins, methods, extrapolation, grids.size()));
    const bool isOutside = bins.back() == -1 || bins.back() == -10;
    const bool isMissing = bins.back() < 0 && !isOutside;
    isMoved.push_back(isMissing || (isOutside && methods.outOfRange == gpuruntime::InterpTypeConstant));
  }
};

template <class R, class T>
void expectValues(const HostArray<R>& actual, const ExpectedValues<R, T>& expected, const std::string& context) {
  ASSERT_EQ(actual.size(), expected.values.size()) << context;
  expectElements(
      actual,
      [&](unsigned long i) {
        const R& value = expected.values[i];
        return !expected.isMoved[i] && sameBits(plainNaN(actual[i]), plainNaN(value)) ? actual[i] : value;
      },
      context);
}

}  // namespace testsupport
