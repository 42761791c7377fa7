#include "support/interpnd.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct Interp2dColonGridTest : ::testing::Test {};
TYPED_TEST_SUITE(Interp2dColonGridTest, MembersNd);

TYPED_TEST(Interp2dColonGridTest, FollowsTheRules) {
  using Compact = typename TypeParam::template Of<gpuruntime::Interp2d_CompactQuery_ColonGrid>;
  using NonCompact = typename TypeParam::template Of<gpuruntime::Interp2d_NonCompactQuery_ColonGrid>;
  const auto mesh = [](auto* out, const auto& on, const auto& queries, const long long* bins, const Sizes& sizes) {
    Compact()(nullptr, out, on.values, queries[0], queries[1], bins, sizes, on.valueSizes, on.extrapolation,
              on.methods.inRange, on.methods.outOfRange);
  };
  const auto scattered = [](auto* out, const auto& on, const auto& queries, const long long*, const Sizes& sizes) {
    NonCompact()(nullptr, out, on.values, queries[0], queries[1], on.valueSizes, sizes[0], on.extrapolation,
                 on.methods.inRange, on.methods.outOfRange);
  };
  checkTwoDimensions<TypeParam>(true, mesh, scattered);
}

}  // namespace
