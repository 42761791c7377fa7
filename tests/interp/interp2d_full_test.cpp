#include "support/interpnd.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct Interp2dFullTest : ::testing::Test {};
TYPED_TEST_SUITE(Interp2dFullTest, MembersNd);

TYPED_TEST(Interp2dFullTest, FollowsTheRules) {
  using Compact = typename TypeParam::template Of<gpuruntime::Interp2d_CompactQuery>;
  using NonCompact = typename TypeParam::template Of<gpuruntime::Interp2d_NonCompactQuery>;
  const auto mesh = [](auto* out, const auto& on, const auto& queries, const long long* bins, const Sizes& sizes) {
    Compact()(nullptr, out, on.grids[0], on.grids[1], on.values, queries[0], queries[1], bins, sizes, on.valueSizes,
              on.extrapolation, on.methods.inRange, on.methods.outOfRange);
  };
  const auto scattered = [](auto* out, const auto& on, const auto& queries, const long long*, const Sizes& sizes) {
    NonCompact()(nullptr, out, on.grids[0], on.grids[1], on.values, queries[0], queries[1], on.valueSizes, sizes[0],
                 on.extrapolation, on.methods.inRange, on.methods.outOfRange);
  };
  checkTwoDimensions<TypeParam>(false, mesh, scattered);
}

}  // namespace
