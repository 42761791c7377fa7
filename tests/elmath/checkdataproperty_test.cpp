#include <type_traits>

#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

template <class T>
struct CheckTest : ::testing::Test {
  using R = RealOf<T>;
  static constexpr R inf = std::numeric_limits<R>::infinity();
  static constexpr R NaN = std::numeric_limits<R>::quiet_NaN();

  // Rising numbers, but for one part of one element.
  static HostArray<T> risingWith(unsigned long n, unsigned long at, R value, bool inImaginary = false) {
    HostArray<T> array(n);
    R* const parts = reinterpret_cast<R*>(array.data());
    const unsigned long partsEach = sizeof(T) / sizeof(R);
    for (unsigned long i = 0; i < n * partsEach; ++i) parts[i] = static_cast<R>(i);
    if (n > 0) parts[at * partsEach + (inImaginary ? 1 : 0)] = value;
    return array;
  }

  template <class Family>
  static bool check(const HostArray<T>& source) {
    const GuardedArray<T> input(source, 1);
    return typename Family::template Invoker<T>()(nullptr, input.data(), source.size());
  }
};
TYPED_TEST_SUITE(CheckTest, TestTypes<gpuruntime::FloatTypes>);

TYPED_TEST(CheckTest, FindsOneElementAnywhere) {
  using namespace gpuruntime;
  for (const unsigned long n : {1UL, 2UL, 255UL, 256UL, 257UL, 70001UL}) {
    for (const unsigned long at : {0UL, n / 2, n - 1}) {
      for (const bool inImaginary : {false, isComplex<TypeParam>}) {
        const auto plain = this->risingWith(n, at, -1, inImaginary);
        const auto withNaN = this->risingWith(n, at, this->NaN, inImaginary);
        const auto withInf = this->risingWith(n, at, -this->inf, inImaginary);
        EXPECT_FALSE(this->template check<CheckNaN>(plain) || this->template check<CheckNaN>(withInf));
        EXPECT_FALSE(this->template check<CheckInf>(plain) || this->template check<CheckInf>(withNaN));
        EXPECT_FALSE(this->template check<CheckNotFinite>(plain));
        EXPECT_TRUE(this->template check<CheckNaN>(withNaN)) << n << " " << at;
        EXPECT_TRUE(this->template check<CheckInf>(withInf)) << n << " " << at;
        EXPECT_TRUE(this->template check<CheckNotFinite>(withNaN) && this->template check<CheckNotFinite>(withInf));
      }
    }
  }
}

TYPED_TEST(CheckTest, FindsWhatIsNotStronglySorted) {
  using T = TypeParam;
  if constexpr (!isComplex<T>) {
    using Family = gpuruntime::CheckNotStronglySortedAscending;
    for (const unsigned long n : {1UL, 2UL, 256UL, 257UL, 70001UL}) {
      EXPECT_FALSE(this->template check<Family>(this->risingWith(n, 0, -1)));
      for (const unsigned long at : {1UL, n / 2, n - 1}) {
        if (at == 0 || at >= n) continue;
        // Equal neighbours count, and a NaN hides both of its own.
        EXPECT_TRUE(this->template check<Family>(this->risingWith(n, at, static_cast<T>(at) - 1))) << n << " " << at;
        EXPECT_FALSE(this->template check<Family>(this->risingWith(n, at, this->NaN))) << n << " " << at;
      }
    }
  }
}

}  // namespace
