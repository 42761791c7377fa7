/// @file
/// The members of the families of one dimension, and one line of values held against the rules.
#pragma once

#include "support/interpreference.hpp"

namespace testsupport {

template <class Grid, class Val, class Res>
struct Member1D {
  using GridT = Grid;
  using ValT = Val;
  using ResT = Res;
  template <class Family>
  using Of = typename Family::template Invoker<Grid, Val, Res>;
};

using Members1D =
    ::testing::Types<Member1D<double, double, double>, Member1D<double, double, float>, Member1D<double, float, float>,
                     Member1D<double, double2, double2>, Member1D<double, double2, float2>,
                     Member1D<double, float2, float2>, Member1D<float, double, double>, Member1D<float, double, float>,
                     Member1D<float, float, float>, Member1D<float, double2, double2>, Member1D<float, double2, float2>,
                     Member1D<float, float2, float2>>;

/// Holds `call(out, grid, points, values, queries, n, count, methods, extrapolation)` against the rules: all pairs of
/// methods, queries sorted and not, and counts around a block's.
template <class Member, class Call>
void checkLines(const std::vector<TestGrid<typename Member::GridT>>& grids, Call call) {
  using T = typename Member::GridT;
  using V = typename Member::ValT;
  using R = typename Member::ResT;
  for (unsigned long k = 0; k < 2 * grids.size(); ++k) {
    const TestGrid<T>& grid = grids[k / 2];
    const bool isPlain = k % 2 == 1;  // Finite values, and queries within the grid alone.
    const std::vector<V> values = trickyValuesOfGrid<V>(grid.size(), isPlain);
    const GuardedArray<T> points = onDevice(grid.points);
    const GuardedArray<V> valuesOnDevice = onDevice(values);
    for (const unsigned long count : {0UL, 1UL, 9UL, 481UL, 1791UL, 4001UL}) {
      const std::vector<T> queries = trickyQueries(grid, count, count % 2 == 0 || grid.points[1] > T(1), isPlain);
      const GuardedArray<T> queriesOnDevice = onDevice(queries);
      for (const MethodPair methods : methodPairs) {
        const R extrapolation = extrapolationValue<R>(count % 2 == 1);
        ExpectedValues<R, T> expected;
        for (const T q : queries) expected.add({grid}, values.data(), {q}, {grid.bin(q)}, methods, extrapolation);
        GuardedArray<R> out(count, 1);
        call(out.data(), grid, points.data(), valuesOnDevice.data(), queriesOnDevice.data(), grid.size(), count,
             methods, extrapolation);
        expectValues(
            out.toHost(), expected,
            std::to_string(grid.size()) + " points, " + std::to_string(count) + " queries, " + inWords(methods));
      }
    }
  }
}

}  // namespace testsupport
