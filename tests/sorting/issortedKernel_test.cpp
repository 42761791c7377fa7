#include "support/complexorder.hpp"
#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

// True if b may stand behind a.
template <class T>
bool mayFollow(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    const auto isLast = [](const T& z) { return std::isnan(std::hypot(z.x, z.y)); };
    return isLast(a) ? isLast(b) : isLast(b) || complexOrder(b, a) <= 0;
  } else {
    return a != a ? b != b : (b != b || a <= b);
  }
}

template <class T>
std::vector<T> differentValues() {
  using Limits = std::numeric_limits<gpuruntime::RealOf<T>>;
  const auto inf = Limits::infinity(), NaN = Limits::quiet_NaN(), max = Limits::max();
  if constexpr (isComplex<T>) {
    using R = gpuruntime::RealOf<T>;
    return {{0, 0},  {R(-0.0), 0}, {1, 0},   {0, 1},    {-1, 0},    {1, -1},    {1, 1},   {-3, 4}, {5, 0},
            {4, -3}, {max, max},   {inf, 0}, {-inf, 1}, {inf, NaN}, {NaN, inf}, {NaN, 0}, {1, NaN}};
  } else if constexpr (std::is_floating_point_v<T>) {
    return {-inf, -1, T(-0.0), 0, Limits::denorm_min(), 1, inf, NaN, -NaN};
  } else if constexpr (std::is_same_v<T, bool>) {
    return {false, true};
  } else {
    return {Limits::min(), T(Limits::min() + 1), 0, 1, T(max - 1), max};
  }
}

template <class Family, class T>
bool ask(const std::vector<T>& elements) {
  HostArray<T> host(elements.size());
  std::copy(elements.begin(), elements.end(), host.data());
  return typename Family::template Invoker<T>()(GuardedArray<T>(host, 1).data(), elements.size());
}

template <class T>
struct IsSortedTest : ::testing::Test {};
TYPED_TEST_SUITE(IsSortedTest, TestTypes<gpuruntime::RealAndComplexFloatTypes>);

TYPED_TEST(IsSortedTest, AsksEveryPairOfNeighbours) {
  using T = TypeParam;
  using gpuruntime::IsSortedVector;
  std::vector<T> values = differentValues<T>();
  for (const T a : values) {
    EXPECT_TRUE((ask<IsSortedVector, T>({a})));
    for (const T b : values) {
      EXPECT_EQ((ask<IsSortedVector, T>({a, b})), mayFollow(a, b)) << inWords(a) << ", " << inWords(b);
    }
  }
  // Long runs of each value, in order, and then one that stands too early or too late.
  std::stable_sort(values.begin(), values.end(), [](const T& a, const T& b) { return !mayFollow(b, a); });
  std::vector<T> sorted;
  for (const T value : values) sorted.insert(sorted.end(), 300000 / values.size(), value);
  EXPECT_TRUE((ask<IsSortedVector, T>(sorted)));
  const unsigned long n = sorted.size();
  for (const unsigned long place : {0UL, n / 2 + 1, n - 1}) {
    std::vector<T> disturbed = sorted;
    disturbed[place] = place == 0 ? values.back() : values.front();
    EXPECT_FALSE((ask<IsSortedVector, T>(disturbed))) << place;
  }
}

template <class T>
struct IsStronglySortedTest : ::testing::Test {};
TYPED_TEST_SUITE(IsStronglySortedTest, TestTypes<gpuruntime::RealFloatTypes>);

TYPED_TEST(IsStronglySortedTest, NeitherTiesNorNaN) {
  using T = TypeParam;
  using gpuruntime::IsStronglySortedVector;
  const T NaN = std::numeric_limits<T>::quiet_NaN();
  EXPECT_TRUE((ask<IsStronglySortedVector, T>({NaN})));
  EXPECT_FALSE((ask<IsStronglySortedVector, T>({T(-0.0), T(0)})));
  std::vector<T> sorted;
  for (int i = -150000; i < 150000; ++i) sorted.push_back(static_cast<T>(i));
  EXPECT_TRUE((ask<IsStronglySortedVector, T>(sorted)));
  for (const unsigned long place : {0UL, sorted.size() / 2, sorted.size() - 2}) {
    for (const bool withNaN : {true, false}) {
      std::vector<T> disturbed = sorted;
      (withNaN ? disturbed[place + 1] : disturbed[place]) = withNaN ? NaN : sorted[place + 1];
      EXPECT_FALSE((ask<IsStronglySortedVector, T>(disturbed))) << place;
    }
  }
}

}  // namespace
