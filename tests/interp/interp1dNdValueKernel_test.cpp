#include "support/interp1d.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct Interp1dNdValueTest : ::testing::Test {};
TYPED_TEST_SUITE(Interp1dNdValueTest, Members1D);

TYPED_TEST(Interp1dNdValueTest, InterpolatesColumnsWithTheBinsGiven) {
  using T = typename TypeParam::GridT;
  using V = typename TypeParam::ValT;
  using R = typename TypeParam::ResT;
  unsigned int turn = 0;
  for (const TestGrid<T>& grid : {fullGrid<T>(9, Spacing::random), colonGrid<T>(9), colonGrid<T>(2, 0.3)}) {
    const unsigned long n = grid.size();
    for (const unsigned long columns : {0UL, 1UL, 39UL, 41UL}) {
      for (const unsigned long count : {0UL, 1UL, 63UL, 130UL}) {
        const MethodPair methods = methodPairs[turn++ % 6];
        const std::vector<T> queries = trickyQueries(grid, count, false);
        std::vector<long long> bins;
        for (const T q : queries) bins.push_back(grid.bin(q));
        // A bin decides, whatever the query; one that is none counts as that of NaN.
        for (unsigned long i = 5; i < count; i += 16) bins[i] = i % 3 == 0 ? -20 : (i % 3 == 1 ? -7 : 0);
        // Values beyond the last whole column are left alone.
        const std::vector<V> values = trickyValuesOfGrid<V>(columns * n + n - 1);
        const GuardedArray<T> points = onDevice(grid.points), queriesOnDevice = onDevice(queries);
        const GuardedArray<V> valuesOnDevice = onDevice(values);
        const GuardedArray<long long> binsOnDevice = onDevice(bins);
        const R extrapolation = extrapolationValue<R>(turn % 2 == 1);
        ExpectedValues<R, T> expected;
        for (unsigned long c = 0; c < columns; ++c) {
          for (unsigned long i = 0; i < count; ++i) {
            expected.add({grid}, values.data() + c * n, {queries[i]}, {bins[i]}, methods, extrapolation);
          }
        }
        GuardedArray<R> out(columns * count);
        const auto call = [&](const auto& family, auto gridArgument) {
          family(nullptr, out.data(), gridArgument, valuesOnDevice.data(), queriesOnDevice.data(), binsOnDevice.data(),
                 count, n, values.size(), methods.inRange, methods.outOfRange, extrapolation);
        };
        if (grid.isColon) {
          call(typename TypeParam::template Of<gpuruntime::Interp1dNdVal_ColonGrid>(), double2{grid.first, 1});
        } else {
          call(typename TypeParam::template Of<gpuruntime::Interp1dNdValFull>(), points.data());
        }
        expectValues(out.toHost(), expected,
                     std::to_string(columns) + " columns, " + std::to_string(count) + " queries, " + inWords(methods));
      }
    }
  }
}

}  // namespace
