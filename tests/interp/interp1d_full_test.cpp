#include "support/interp1d.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct Interp1dFullTest : ::testing::Test {};
TYPED_TEST_SUITE(Interp1dFullTest, Members1D);

TYPED_TEST(Interp1dFullTest, FollowsTheRules) {
  using GridT = typename TypeParam::GridT;
  std::vector<TestGrid<GridT>> grids;
  for (const Spacing spacing : {Spacing::even, Spacing::geometric, Spacing::random}) {
    for (const unsigned long n : {2UL, 30UL}) grids.push_back(fullGrid<GridT>(n, spacing));
  }
  checkLines<TypeParam>(
      grids, [](auto* out, const TestGrid<GridT>&, const GridT* points, const auto* values, const GridT* queries,
                unsigned long n, unsigned long count, MethodPair methods, auto extrapolation) {
        typename TypeParam::template Of<gpuruntime::Interp1dFull>()(nullptr, out, points, values, queries, n, count,
                                                                    methods.inRange, methods.outOfRange, extrapolation);
      });
}

}  // namespace
