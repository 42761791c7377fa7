#include "support/devicemodel.hpp"
#include "support/failedsizes.hpp"
#include "support/interpnd.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct InterpndNonCompactQueryFullTest : ::testing::Test {};
TYPED_TEST_SUITE(InterpndNonCompactQueryFullTest, MembersNd);

TYPED_TEST(InterpndNonCompactQueryFullTest, FollowsTheRulesInOneToFiveDimensions) {
  using Family = typename TypeParam::template Of<gpuruntime::Interpnd_NonCompactQuery>;
  const auto scattered = [](auto* out, const auto& on, const auto& queries, const long long*, const Sizes& sizes) {
    Family()(nullptr, out, on.grids, on.values, queries, on.valueSizes, sizes[0], on.extrapolation, on.methods.inRange,
             on.methods.outOfRange, on.valueSizes.size());
  };
  checkScatteredOfAllRanks<TypeParam>(false, scattered);
}

struct InterpndNonCompactQueryFullFailureTest : DeviceModelTest {};

TEST_F(InterpndNonCompactQueryFullFailureTest, SaysThatTheSizesDidNotGetThere) {
  for (const unsigned long n : {4UL, 5UL, 6UL}) {
    const Sizes sizes(n, 2);
    expectStops("Interpnd Noncompact query kernel failed to copy valueSz to constant memory\n", n <= 5 ? 1 : 0,
                [&](double* out) {
                  gpuruntime::Interpnd_NonCompactQuery::Invoker<double, double>()(
                      nullptr, out, std::vector<const double*>(n), nullptr, std::vector<const double*>(n), sizes, 1,
                      1.0, gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeLinear, n);
                });
  }
}

}  // namespace
