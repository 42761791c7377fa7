#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

/// Every member of both families against a plain search.
template <class T>
void check(const HostArray<double2>& hostA, const HostArray<double2>& hostB) {
  const unsigned long nA = hostA.size(), nB = hostB.size();
  const GuardedArray<double2> A(hostA, 1), B(hostB, 1);
  GuardedArray<bool> member(nA, 1), memberAlone(nA);
  GuardedArray<double> location(nA, 1);
  typename gpuruntime::IsMember1ArgCmplx::Invoker<T>()(nullptr, A.data(), nA, B.data(), nB, memberAlone.data());
  typename gpuruntime::IsMember2ArgCmplx::Invoker<T>()(nullptr, A.data(), nA, B.data(), nB, member.data(),
                                                       location.data());
  const auto place = [&](unsigned long i) {
    for (unsigned long j = 0; j < nB; ++j) {
      if (hostA[i].x == hostB[j].x && hostA[i].y == hostB[j].y) return static_cast<double>(j + 1);
    }
    return 0.0;
  };
  HostArray<double> places(nA);
  for (unsigned long i = 0; i < nA; ++i) places[i] = place(i);
  expectElements(location.toHost(), [&](unsigned long i) { return places[i]; });
  expectElements(member.toHost(), [&](unsigned long i) { return places[i] != 0; });
  expectElements(memberAlone.toHost(), [&](unsigned long i) { return places[i] != 0; });
}

template <class T>
struct IsMemberCmplxTest : ::testing::Test {};
TYPED_TEST_SUITE(IsMemberCmplxTest, TestTypes<gpuruntime::ComplexMemberTypes>);

TYPED_TEST(IsMemberCmplxTest, LowestPlaceOfEqualElements) {
  std::mt19937 engine(5);
  const double NaN = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  const double parts[] = {0.0, -0.0, 1, -1, 2.5, NaN, -NaN, inf, -inf, 3, -7};
  // Few values, so that there are duplicates and long runs of equal real parts.
  const auto random = [&](unsigned long n, unsigned int distinct) {
    HostArray<double2> array(n);
    for (unsigned long i = 0; i < n; ++i) array[i] = {parts[engine() % distinct], parts[engine() % 11]};
    return array;
  };
  for (const unsigned int distinct : {1U, 6U, 11U}) {
    check<TypeParam>(random(300, distinct), random(40, distinct));
    check<TypeParam>(random(257, distinct), random(1, distinct));
  }
  check<TypeParam>(random(5, 4), HostArray<double2>(0));
  check<TypeParam>(HostArray<double2>(0), random(5, 4));
}

TEST(IsMemberCmplxLong, EachOfManyIsFound) {
  constexpr unsigned long n = 60000;
  HostArray<double2> B(n), A(n);
  for (unsigned long i = 0; i < n; ++i) {
    B[i] = {static_cast<double>(i * 7919 % n / 3), -static_cast<double>(i % 5)};
    A[n - 1 - i] = B[i];
  }
  const GuardedArray<double2> deviceA(A), deviceB(B);
  GuardedArray<bool> member(n);
  GuardedArray<double> location(n);
  gpuruntime::IsMember2ArgCmplx::Invoker<double2>()(nullptr, deviceA.data(), n, deviceB.data(), n, member.data(),
                                                    location.data());
  const HostArray<double> places = location.toHost();
  for (unsigned long i = 0; i < n; ++i) {
    const auto place = static_cast<unsigned long>(places[i]) - 1;
    ASSERT_LE(place, n - 1 - i);
    ASSERT_TRUE(A[i].x == B[place].x && A[i].y == B[place].y);
  }
}

}  // namespace
