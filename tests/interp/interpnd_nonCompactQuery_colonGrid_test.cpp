#include "support/devicemodel.hpp"
#include "support/failedsizes.hpp"
#include "support/interpnd.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct InterpndNonCompactQueryColonTest : ::testing::Test {};
TYPED_TEST_SUITE(InterpndNonCompactQueryColonTest, MembersNd);

TYPED_TEST(InterpndNonCompactQueryColonTest, FollowsTheRulesInOneToFiveDimensions) {
  using Family = typename TypeParam::template Of<gpuruntime::Interpnd_NonCompactQuery_ColonGrid>;
  const auto scattered = [](auto* out, const auto& on, const auto& queries, const long long*, const Sizes& sizes) {
    Family()(nullptr, out, on.values, queries, on.valueSizes, sizes[0], on.extrapolation, on.methods.inRange,
             on.methods.outOfRange, on.valueSizes.size());
  };
  checkScatteredOfAllRanks<TypeParam>(true, scattered);
}

struct InterpndNonCompactQueryColonFailureTest : DeviceModelTest {};

TEST_F(InterpndNonCompactQueryColonFailureTest, SaysThatTheSizesDidNotGetThere) {
  for (const unsigned long n : {4UL, 5UL, 6UL}) {
    const Sizes sizes(n, 2);
    expectStops("Interpnd Noncompact query kernel failed to copy valueSz to constant memory\n", n <= 5 ? 1 : 0,
                [&](double* out) {
                  gpuruntime::Interpnd_NonCompactQuery_ColonGrid::Invoker<double, double>()(
                      nullptr, out, nullptr, std::vector<const double*>(n), sizes, 1, 1.0, gpuruntime::InterpTypeLinear,
                      gpuruntime::InterpTypeLinear, n);
                });
  }
}

}  // namespace
