#include "support/interp1d.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct Interp1dColonGridTest : ::testing::Test {};
TYPED_TEST_SUITE(Interp1dColonGridTest, Members1D);

TYPED_TEST(Interp1dColonGridTest, FollowsTheRules) {
  using GridT = typename TypeParam::GridT;
  // A first point other than 1 moves the arithmetic, but no bin.
  const std::vector<TestGrid<GridT>> grids{colonGrid<GridT>(2), colonGrid<GridT>(30), colonGrid<GridT>(30, 0.3)};
  checkLines<TypeParam>(
      grids, [](auto* out, const TestGrid<GridT>& grid, const GridT*, const auto* values, const GridT* queries,
                unsigned long n, unsigned long count, MethodPair methods, auto extrapolation) {
        typename TypeParam::template Of<gpuruntime::Interp1d_ColonGrid>()(nullptr, out, double2{grid.first, -5}, values,
                                                                          queries, n, count, methods.inRange,
                                                                          methods.outOfRange, extrapolation);
      });
}

}  // namespace
