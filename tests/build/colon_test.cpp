#include "support/familytest.hpp"

#include <cfenv>

namespace {

using namespace testsupport;

// The conversion at the store: truncated and saturated to the 32- or 64-bit integer, of which T keeps the low bits.
template <class T>
T stored(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    using Signed = std::conditional_t<(sizeof(T) > 4), long long, int>;
    using Wide = std::conditional_t<std::is_signed_v<T>, Signed, std::make_unsigned_t<Signed>>;
    if (std::isnan(value)) return 0;
    const auto exact = static_cast<long double>(std::trunc(value));
    if (exact > static_cast<long double>(std::numeric_limits<Wide>::max())) {
      return static_cast<T>(std::numeric_limits<Wide>::max());
    }
    if (exact < static_cast<long double>(std::numeric_limits<Wide>::min())) {
      return static_cast<T>(std::numeric_limits<Wide>::min());
    }
    return static_cast<T>(static_cast<Wide>(exact));
  }
}

double colonValue(unsigned long i, unsigned long n, double start, double step, double stop) {
  const unsigned long half = (n - 1) / 2;
  if (n % 2 == 1 && i == half) {
    const bool sameSide = (start >= 0 && stop >= 0) || (start <= 0 && stop <= 0);
    const double difference = stop - start;
    return sameSide ? std::fma(difference, 0.5, start) : (start + stop) * 0.5;
  }
  // volatile keeps the compiler from fusing the product with the sum.
  if (i <= half) {
    volatile const double product = static_cast<double>(i) * step;
    return start + product;
  }
  volatile const double product = static_cast<double>(n - 1 - i) * step;
  return stop - product;
}

template <class T>
struct ColonTest : ::testing::Test {};
TYPED_TEST_SUITE(ColonTest, TestTypes<gpuruntime::RealNumericTypes>);

struct Range {
  double start, step, stop;
};

TYPED_TEST(ColonTest, FillsFromBothEnds) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    for (const Range& range : {Range{0, 0.1, 0.1 * static_cast<double>(n)}, Range{100, -1e-3, 3},
                               Range{-7.25, 1.0 / 3, 90}, Range{-1e10, 1e19, 1e30}}) {
      GuardedArray<T> out(n, 1);
      typename gpuruntime::Colon::Invoker<T>()(nullptr, n, out.data(), range.start, range.step, range.stop);
      expectElements(
          out.toHost(),
          [&](unsigned long i) { return stored<T>(colonValue(i, n, range.start, range.step, range.stop)); },
          "n = " + std::to_string(n));
    }
  }
}

TYPED_TEST(ColonTest, IntColonFusesProductAndSum) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    GuardedArray<T> out(n, 3);
    typename gpuruntime::IntColon::Invoker<T>()(nullptr, n, out.data(), -2, 0.1);
    expectElements(
        out.toHost(), [](unsigned long i) { return stored<T>(std::fma(static_cast<double>(i), 0.1, -2.0)); },
        "n = " + std::to_string(n));
  }
}

TEST(Colon, MeetsTheEndsAndTheExactMiddle) {
  const double infinity = std::numeric_limits<double>::infinity(), nan = std::nan("");
  struct Case {
    Range range;
    unsigned long n, at;
    double expected;
  };
  const Case cases[] = {
      {{1, 5, 4}, 1, 0, 2.5},                       // a single element is the middle, not the start
      {{0.1, 0.7, 0.9}, 2, 0, 0.1},                 // both ends exact whatever the step
      {{0.1, 0.7, 0.9}, 2, 1, 0.9},                 //
      {{-1e308, 1e308, 1e308}, 3, 1, 0},            // opposite signs: no difference to overflow
      {{1e308, 2.5e307, 1.5e308}, 3, 1, 1.25e308},  // same signs: no sum to overflow
      {{0, 0.1, 1}, 11, 9, 1 - 1 * 0.1},            // counted back from the stop
      {{-0.0, 1, -0.0}, 1, 0, 0.0},                 // fma(0, 0.5, -0.0)
      {{infinity, 1, infinity}, 1, 0, nan},         // Inf - Inf on one side
      {{-infinity, 1, infinity}, 1, 0, nan},        // -Inf + Inf
      {{nan, 1, 4}, 3, 1, nan},                     //
      {{nan, 1, 4}, 4, 2, 3},                       // the upper half does not see the start
  };
  for (const Case& c : cases) {
    GuardedArray<double> out(c.n);
    gpuruntime::Colon::Invoker<double>()(nullptr, c.n, out.data(), c.range.start, c.range.step, c.range.stop);
    const double actual = out.toHost()[c.at];
    EXPECT_TRUE(sameBits(actual, c.expected) || (std::isnan(actual) && std::isnan(c.expected)))
        << actual << " instead of " << c.expected << " for start " << c.range.start << ", n " << c.n;
  }
}

}  // namespace
