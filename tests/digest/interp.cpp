#include "digest.hpp"

namespace digest {
namespace {

using gpuruntime::InterpType;

constexpr unsigned long count = 3001;
constexpr unsigned long sides[] = {11, 7, 5, 4, 3}, querySides[] = {40, 9, 6, 4, 3};
using Sizes = std::vector<unsigned long>;

template <class T>
HostArray<T> scaled(unsigned long n, double low, double step) {
  HostArray<T> values(n);
  for (unsigned long i = 0; i < n; ++i) values[i] = static_cast<T>(low + step * static_cast<double>(i));
  return values;
}

// Over the grid and beyond both of its ends, in no order.
template <class T>
HostArray<T> queriesOver(unsigned long side, unsigned long n) {
  HostArray<T> queries(n);
  for (unsigned long i = 0; i < n; ++i) {
    const auto part = static_cast<double>(i * 2654435761 % 4099) / 4099;
    queries[i] = static_cast<T>(-0.5 + part * static_cast<double>(side + 2));
  }
  return queries;
}

template <class V>
HostArray<V> valuesOf(unsigned long n) {
  HostArray<V> values(n);
  for (unsigned long i = 0; i < n; ++i) {
    const double x = static_cast<double>(i * 2654435761 % 10007) / 97 - 40;
    if constexpr (isComplex<V>) {
      values[i] = {static_cast<gpuruntime::RealOf<V>>(x), static_cast<gpuruntime::RealOf<V>>(x / 3)};
    } else {
      values[i] = static_cast<V>(x);
    }
  }
  return values;
}

/// Grids, queries and bins of five dimensions, on the device.
template <class T>
struct Case {
  std::vector<GuardedArray<T>> gridArrays, meshArrays, scatteredArrays;
  std::vector<const T*> grids, mesh, scattered;
  GuardedArray<long long> bins{400};
  Sizes sizes{std::begin(sides), std::end(sides)}, querySizes{std::begin(querySides), std::end(querySides)};

  Case() {
    for (unsigned int d = 0; d < 5; ++d) {
      HostArray<T> grid = scaled<T>(sides[d], 1, 1);
      if (d % 2 == 1) grid[1] = T(1.75);
      gridArrays.emplace_back(grid);
      meshArrays.emplace_back(queriesOver<T>(sides[d], querySides[d]));
      scatteredArrays.emplace_back(queriesOver<T>(sides[d], count));
    }
    unsigned long offset = 0;
    for (unsigned int d = 0; d < 5; ++d) {
      grids.push_back(gridArrays[d].data());
      mesh.push_back(meshArrays[d].data());
      scattered.push_back(scatteredArrays[d].data());
      typename gpuruntime::IndexSearch::Invoker<T>()(nullptr, bins.data(), offset, grids[d], mesh[d], sides[d],
                                                     querySides[d]);
      offset += (querySides[d] + 15) / 16 * 16;
    }
  }
};

constexpr InterpType linear = gpuruntime::InterpTypeLinear, nearest = gpuruntime::InterpTypeNearest;

template <class T>
void addSearch(Lines& lines, const Case<T>& on) {
  const std::string type = std::string("<") + typeName<T>() + ">";
  lines.moved("IndexSearch" + type, on.bins.toHost());
  lines.moved("IndexSearch_ColonGrid" + type, filled<long long>(count, [&](long long* out) {
                typename gpuruntime::IndexSearch_ColonGrid::Invoker<T>()(nullptr, out, 0, on.scattered[0], sides[0],
                                                                         count);
              }));
  lines.moved("CopyToVector", filled<T>(sides[1], [&](T* out) {
                typename gpuruntime::CopyToVector::Invoker<T>()(nullptr, out, on.scattered[2], 1, sides, 3, count);
              }));
}

template <class T, class V, class R>
void addLine(Lines& lines, const Case<T>& on) {
  constexpr unsigned long n = sides[0], columns = 3;
  const GuardedArray<V> values(valuesOf<V>(n * columns));
  const double2 pair{1, 1};
  const std::string types = std::string("<") + typeName<T>() + ", " + typeName<V>() + ">";
  for (const InterpType inRange : {linear, nearest}) {
    const std::string name = types + std::to_string(inRange);
    lines.exact("Interp1dFull" + name, filled<R>(count, [&](R* out) {
                  typename gpuruntime::Interp1dFull::Invoker<T, V, R>()(
                      nullptr, out, on.grids[0], values.data(), on.scattered[0], n, count, inRange, linear, R{});
                }));
    lines.exact("Interp1d_ColonGrid" + name, filled<R>(count, [&](R* out) {
                  typename gpuruntime::Interp1d_ColonGrid::Invoker<T, V, R>()(
                      nullptr, out, pair, values.data(), on.scattered[0], n, count, inRange, nearest, R{});
                }));
    lines.exact("Interp1dNdValFull" + name, filled<R>(querySides[0] * columns, [&](R* out) {
                  typename gpuruntime::Interp1dNdValFull::Invoker<T, V, R>()(nullptr, out, on.grids[0], values.data(),
                                                                             on.mesh[0], on.bins.data(), querySides[0],
                                                                             n, n * columns, inRange, linear, R{});
                }));
    lines.exact("Interp1dNdVal_ColonGrid" + name, filled<R>(querySides[0] * columns, [&](R* out) {
                  typename gpuruntime::Interp1dNdVal_ColonGrid::Invoker<T, V, R>()(
                      nullptr, out, pair, values.data(), on.mesh[0], on.bins.data(), querySides[0], n, n * columns,
                      inRange, linear, R{});
                }));
  }
}

// Those of two and three dimensions are called by those of any number.
template <class T, class V>
void addDimensions(Lines& lines, const Case<T>& on) {
  unsigned long valueCount = 1, meshCount = 1;
  for (unsigned long d = 1; d <= 5; ++d) {
    valueCount *= sides[d - 1];
    meshCount *= querySides[d - 1];
    if (d == 1) continue;
    const GuardedArray<V> values(valuesOf<V>(valueCount));
    const std::string name = std::to_string(d) + "<" + typeName<T>() + ">";
    const Sizes sizes(sides, sides + d), querySizes(querySides, querySides + d);
    lines.exact("Interpnd_CompactQuery" + name, filled<V>(meshCount, [&](V* out) {
                  typename gpuruntime::Interpnd_CompactQuery::Invoker<T, V>()(nullptr, out, on.grids, values.data(),
                                                                              on.mesh, on.bins.data(), querySizes,
                                                                              sizes, V{}, linear, linear, d);
                }));
    lines.exact("Interpnd_CompactQuery_ColonGrid" + name, filled<V>(meshCount, [&](V* out) {
                  typename gpuruntime::Interpnd_CompactQuery_ColonGrid::Invoker<T, V>()(
                      nullptr, out, values.data(), on.mesh, on.bins.data(), querySizes, sizes, V{}, linear, nearest, d);
                }));
    lines.exact("Interpnd_NonCompactQuery" + name, filled<V>(count, [&](V* out) {
                  typename gpuruntime::Interpnd_NonCompactQuery::Invoker<T, V>()(
                      nullptr, out, on.grids, values.data(), on.scattered, sizes, count, V{}, linear, linear, d);
                }));
    lines.exact("Interpnd_NonCompactQuery_ColonGrid" + name, filled<V>(count, [&](V* out) {
                  typename gpuruntime::Interpnd_NonCompactQuery_ColonGrid::Invoker<T, V>()(
                      nullptr, out, values.data(), on.scattered, sizes, count, V{}, nearest, linear, d);
                }));
  }
}

}  // namespace

void addInterp(Lines& lines) {
  forEachType(gpuruntime::RealFloatTypes{}, [&](auto tag) {
    using T = decltype(tag);
    const Case<T> on;
    addSearch<T>(lines, on);
    forEachType(gpuruntime::FloatTypes{}, [&](auto value) {
      using V = decltype(value);
      using Narrow = std::conditional_t<isComplex<V>, float2, float>;
      addLine<T, V, V>(lines, on);
      if constexpr (!std::is_same_v<V, Narrow>) addLine<T, V, Narrow>(lines, on);
      addDimensions<T, V>(lines, on);
    });
  });
}

}  // namespace digest
