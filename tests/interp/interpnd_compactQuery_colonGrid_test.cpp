#include "support/devicemodel.hpp"
#include "support/failedsizes.hpp"
#include "support/interpnd.hpp"

namespace {

using namespace testsupport;

template <class Member>
struct InterpndCompactQueryColonTest : ::testing::Test {};
TYPED_TEST_SUITE(InterpndCompactQueryColonTest, MembersNd);

TYPED_TEST(InterpndCompactQueryColonTest, FollowsTheRulesInOneToFiveDimensions) {
  using Family = typename TypeParam::template Of<gpuruntime::Interpnd_CompactQuery_ColonGrid>;
  const auto mesh = [](auto* out, const auto& on, const auto& queries, const long long* bins, const Sizes& sizes) {
    Family()(nullptr, out, on.values, queries, bins, sizes, on.valueSizes, on.extrapolation, on.methods.inRange,
             on.methods.outOfRange, on.valueSizes.size());
  };
  checkMeshesOfAllRanks<TypeParam>(true, mesh);
}

struct InterpndCompactQueryColonFailureTest : DeviceModelTest {};

TEST_F(InterpndCompactQueryColonFailureTest, SaysThatTheSizesDidNotGetThere) {
  for (const unsigned long n : {4UL, 5UL, 6UL}) {
    const Sizes sizes(n, 2);
    const auto call = [&](double* out) {
      gpuruntime::Interpnd_CompactQuery_ColonGrid::Invoker<double, double>()(
          nullptr, out, nullptr, std::vector<const double*>(n), nullptr, sizes, sizes, 1.0,
          gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeLinear, n);
    };
    const char* const ofQueries = "Interpnd compact query kernel failed to copy querySz to constant memory\n";
    const char* const ofValues = "Interpnd compact query kernel failed to copy valueSz to constant memory\n";
    expectStops(ofQueries, n <= 5 ? 1 : 0, call);
    if (n <= 5) expectStops(ofValues, 2, call);
  }
}

}  // namespace
