#include "support/interpreference.hpp"

namespace {

using namespace testsupport;

template <class T>
struct IndexSearchTest : ::testing::Test {
  /// Holds the bins that both families give for a grid against a plain search.
  static void check(const TestGrid<T>& grid, const std::vector<T>& queries, const std::string& context) {
    constexpr unsigned long offset = 3;
    const GuardedArray<T> points = onDevice(grid.points), queriesOnDevice = onDevice(queries);
    GuardedArray<long long> bins(queries.size() + offset);
    if (grid.isColon) {
      typename gpuruntime::IndexSearch_ColonGrid::Invoker<T>()(nullptr, bins.data(), offset, queriesOnDevice.data(),
                                                               grid.size(), queries.size());
    } else {
      typename gpuruntime::IndexSearch::Invoker<T>()(nullptr, bins.data(), offset, points.data(),
                                                     queriesOnDevice.data(), grid.size(), queries.size());
    }
    const HostArray<long long> found = bins.toHost();
    for (unsigned long i = 0; i < offset; ++i) EXPECT_TRUE(isUntouched(found, i)) << context;
    for (unsigned long i = 0; i < queries.size(); ++i) {
      ASSERT_EQ(found[offset + i], grid.bin(queries[i])) << context << ", query " << i << " is " << queries[i];
    }
  }
};
TYPED_TEST_SUITE(IndexSearchTest, TestTypes<gpuruntime::RealFloatTypes>);

TYPED_TEST(IndexSearchTest, FindsBinsInGridsOfEveryKind) {
  using T = TypeParam;
  std::vector<TestGrid<T>> grids{colonGrid<T>(2), colonGrid<T>(3), colonGrid<T>(1000)};
  for (const Spacing spacing : {Spacing::even, Spacing::geometric, Spacing::random}) {
    for (const unsigned long n : {2UL, 3UL, 16UL, 17UL, 19UL, 100UL}) grids.push_back(fullGrid<T>(n, spacing));
  }
  grids.push_back(fullGrid<T>(5000, Spacing::even));
  grids.push_back(fullGrid<T>(5000, Spacing::random));
  for (const TestGrid<T>& grid : grids) {
    for (const unsigned long count : {0UL, 1UL, 5UL, 8UL, 575UL, 577UL, 1153UL, 4000UL}) {
      for (const bool isSorted : {true, false}) {
        this->check(grid, trickyQueries(grid, count, isSorted),
                    std::to_string(grid.size()) + " points, " + std::to_string(count) + " queries");
      }
    }
  }
}

// Without a query in the grid, and all in one bin.
TYPED_TEST(IndexSearchTest, FindsNothingWhereNothingIs) {
  using T = TypeParam;
  const TestGrid<T> grid = fullGrid<T>(300, Spacing::random);
  for (const T q : {std::numeric_limits<T>::quiet_NaN(), T(-100), T(1e9), grid.points[299], grid.points[17], T(0)}) {
    this->check(grid, std::vector<T>(700, q), "only " + std::to_string(q));
    this->check(colonGrid<T>(300), std::vector<T>(700, q), "only " + std::to_string(q));
  }
}

}  // namespace
