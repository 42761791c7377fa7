#include "support/devicemodel.hpp"
#include "support/failedsizes.hpp"
#include "support/interpnd.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct Interp3dColonGridTest : ::testing::Test {
  static constexpr auto mesh = [](auto* out, const auto& on, const auto& queries, const long long* bins,
                                  const Sizes& sizes) {
    using Family = typename Member::template Of<gpuruntime::Interp3d_CompactQuery_ColonGrid>;
    Family()(nullptr, out, on.values, queries[0], queries[1], queries[2], bins, sizes, on.valueSizes, on.extrapolation,
             on.methods.inRange, on.methods.outOfRange);
  };
  static constexpr auto scattered = [](auto* out, const auto& on, const auto& queries, const long long*,
                                       const Sizes& sizes) {
    using Family = typename Member::template Of<gpuruntime::Interp3d_NonCompactQuery_ColonGrid>;
    Family()(nullptr, out, on.values, queries[0], queries[1], queries[2], on.valueSizes, sizes[0], on.extrapolation,
             on.methods.inRange, on.methods.outOfRange);
  };
};
TYPED_TEST_SUITE(Interp3dColonGridTest, MembersNd);

TYPED_TEST(Interp3dColonGridTest, FollowsTheRules) {
  checkThreeDimensions<TypeParam>(true, TestFixture::mesh, TestFixture::scattered);
}

struct Interp3dColonGridFailureTest : DeviceModelTest {};

TEST_F(Interp3dColonGridFailureTest, SaysThatTheSizesDidNotGetThere) {
  const Sizes sizes{2, 2, 2};
  const MethodPair methods = methodPairs[0];
  expectStops("Interp3d compact query kernel failed to copy valueSz to constant memory\n", 1, [&](double* out) {
    gpuruntime::Interp3d_CompactQuery_ColonGrid::Invoker<double, double>()(nullptr, out, nullptr, nullptr, nullptr,
                                                                           nullptr, nullptr, sizes, sizes, 1.0,
                                                                           methods.inRange, methods.outOfRange);
  });
  expectStops("Interp3d Noncompact query kernel failed to copy valueSz to constant memory\n", 1, [&](double* out) {
    gpuruntime::Interp3d_NonCompactQuery_ColonGrid::Invoker<double, double>()(
        nullptr, out, nullptr, nullptr, nullptr, nullptr, sizes, 1, 1.0, methods.inRange, methods.outOfRange);
  });
}

}  // namespace
