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
  for (const Sizes& sizes : {Sizes{7, 5}, Sizes{2, 2}, Sizes{40, 30}, Sizes{41, 30}}) {
    const GridsOnDevice<typename TypeParam::GridT, typename TypeParam::ValT> grids(sizes, true, sizes[0] == 41);
    for (const MethodPair methods : methodPairs) {
      for (const Sizes& querySizes : {Sizes{17, 3}, Sizes{16, 40}, Sizes{1, 300}, Sizes{530, 21}, Sizes{0, 5}}) {
        grids.checkMesh(querySizes, methods, mesh);
      }
      for (const unsigned long count : {0UL, 1UL, 257UL, 1000UL}) {
        grids.checkScattered(count, true, methods, scattered);
        grids.checkScattered(count, false, methods, scattered);
      }
    }
  }
}

}  // namespace
