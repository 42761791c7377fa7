#include "support/sortreference.hpp"
#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

/// What a value of B is in type T; by long double, which no conversion here rounds on the way.
template <class T>
long double inType(double x) {
  if constexpr (std::is_same_v<T, bool>) {
    return x != 0;
  } else if constexpr (std::is_integral_v<T>) {
    using Limits = std::numeric_limits<T>;
    return std::min<long double>(std::max<long double>(std::trunc(x), Limits::min()), Limits::max());
  } else {
    return static_cast<T>(x);
  }
}

template <class T>
class IsMemberTest : public ::testing::Test {
 protected:
  /// Runs the chain (sort with an index, then the search) and holds it against a plain search of the unsorted B.
  static void check(const HostArray<T>& hostA, std::vector<double> hostB) {
    if (std::is_same_v<T, bool>) {
      for (double& b : hostB) b = std::abs(b);  // As bool, negative numbers would not stay sorted.
    }
    const unsigned long nA = hostA.size(), nB = hostB.size();
    HostArray<double> places(nB);
    for (unsigned long j = 0; j < nB; ++j) places[j] = static_cast<double>(j + 1);
    const GuardedArray<T> A(hostA, 1);
    GuardedArray<double> B(arrayOf(hostB), 1), indexB(places), location(nA, 1);
    GuardedArray<bool> member(nA, 1), memberAlone(nA);
    gpuruntime::SortVector::Invoker<double>()(B.data(), indexB.data(), nB, true);
    gpuruntime::IsMember2Arg::Invoker<T>()(nullptr, A.data(), nA, B.data(), nB, indexB.data(), member.data(),
                                           location.data());
    gpuruntime::IsMember1Arg::Invoker<T>()(A.data(), nA, B.data(), nB, memberAlone.data());

    const HostArray<double> sorted = B.toHost(), index = indexB.toHost();
    // The first sorted position whose value in type T is equal: the lowest place only among values equal as doubles.
    const auto place = [&](unsigned long i) {
      for (unsigned long j = 0; j < nB; ++j) {
        if (!std::isnan(sorted[j]) && inType<T>(sorted[j]) == exactValue(hostA[i])) return index[j];
      }
      return 0.0;
    };
    const std::string context = std::to_string(nA) + " in " + std::to_string(nB);
    expectElements(location.toHost(), place, context);
    const HostArray<double> found = location.toHost();
    const auto isMember = [&](unsigned long i) { return found[i] != 0; };
    expectElements(member.toHost(), isMember, context);
    expectElements(memberAlone.toHost(), isMember, context);
  }
};
TYPED_TEST_SUITE(IsMemberTest, TestTypes<gpuruntime::MemberTypes>);

TYPED_TEST(IsMemberTest, TrickyValuesInTrickyValues) {
  const HostArray<TypeParam> A = trickyValues<TypeParam>();
  const HostArray<double> values = trickyValues<double>();
  std::vector<double> B(values.data(), values.data() + values.size());
  this->check(A, B);
  this->check(A, {});
  this->check(HostArray<TypeParam>(0), B);
  const double NaN = std::numeric_limits<double>::quiet_NaN();
  this->check(A, {NaN, -NaN});
  this->check(A, {NaN, 0.0, -0.0, 1, NaN, 0.0, 3.7, 1});
  this->check(A, {-0.0, 0.0});
}

TYPED_TEST(IsMemberTest, ManyInFew) {
  std::mt19937 engine(3);
  for (const unsigned long nB : {1UL, 2UL, 3UL, 7UL, 64UL, 100UL}) {
    for (const unsigned long nA : {1UL, 255UL, 257UL, 3001UL}) {
      std::vector<double> B;
      for (unsigned long j = 0; j < nB; ++j) B.push_back(static_cast<double>(engine() % (3 * nB) / 2));
      HostArray<TypeParam> A(nA);
      for (unsigned long i = 0; i < nA; ++i) A[i] = elementOf<TypeParam>(static_cast<long long>(engine() % 150), 0);
      this->check(A, B);
    }
  }
}

TEST(IsMemberByHand, DuplicatesAndConversions) {
  const auto locations = [](auto a, const std::vector<double>& sortedB, const std::vector<double>& index) {
    const auto A = GuardedArray<decltype(a)>(arrayOf<decltype(a)>({a}));
    const GuardedArray<double> B(arrayOf(sortedB)), indexB(arrayOf(index));
    GuardedArray<bool> member(1);
    GuardedArray<double> location(1);
    gpuruntime::IsMember2Arg::Invoker<decltype(a)>()(nullptr, A.data(), 1, B.data(), sortedB.size(), indexB.data(),
                                                     member.data(), location.data());
    return location.toHost()[0];
  };
  const double NaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(locations(2.0, {1, 2, 2, NaN}, {7, 3, 9, 5}), 3);
  EXPECT_EQ(locations(NaN, {1, 2, 2, NaN}, {7, 3, 9, 5}), 0);
  EXPECT_EQ(locations(3, {3.7}, {4}), 4);
  EXPECT_EQ(locations(0.1F, {0.1}, {4}), 4);
  EXPECT_EQ(locations(0, {-1, NaN}, {4, 5}), 0);
}

}  // namespace
