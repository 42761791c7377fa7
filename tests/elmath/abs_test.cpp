#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
struct AbsTest : ::testing::Test {};
TYPED_TEST_SUITE(AbsTest, TestTypes<gpuruntime::FloatTypes>);

// The magnitude in long double, within which squares neither overflow nor vanish.
template <class T>
long double magnitude(const T& value) {
  if constexpr (isComplex<T>) {
    return std::hypot(static_cast<long double>(value.x), static_cast<long double>(value.y));
  } else {
    return std::abs(static_cast<long double>(value));
  }
}

template <class R>
void expectClose(R actual, long double exact, int ulps, const std::string& context) {
  const R nearest = static_cast<R>(exact);
  if (std::isnan(nearest) || std::isinf(nearest) || nearest == 0) {
    EXPECT_TRUE(actual == nearest || (std::isnan(actual) && std::isnan(nearest))) << context << ": " << actual;
  } else {
    const long double unit = static_cast<long double>(nearest) - std::nextafter(nearest, R(0));
    EXPECT_LE(std::abs(actual - exact), ulps * unit) << context << ": " << actual << ", exactly " << exact;
  }
}

TYPED_TEST(AbsTest, GivesTheMagnitude) {
  using T = TypeParam;
  using R = RealOf<T>;
  HostArray<T> source = trickyValues<T>();
  const GuardedArray<T> input(source, 1);
  GuardedArray<R> output(source.size());
  typename gpuruntime::Abs::Invoker<T>()(nullptr, output.data(), input.data(), source.size());
  const HostArray<R> actual = output.toHost();
  for (unsigned long i = 0; i < source.size(); ++i) {
    EXPECT_FALSE(std::signbit(actual[i]) && !isComplex<T>);
    expectClose(actual[i], magnitude(source[i]), isComplex<T> ? 2 : 0, inWords(source[i]));
  }
}

TYPED_TEST(AbsTest, RaisesToAPower) {
  using T = TypeParam;
  using R = RealOf<T>;
  struct Case {
    double value, p, power;
  };
  const double huge = std::is_same_v<R, double> ? 1e300 : 1e38;
  for (const Case& c : {Case{-3, 2, 9}, Case{4, 0.5, 2}, Case{0, 0, 1}, Case{0, -1, inf}, Case{NaN, 0, 1},
                        Case{-1.5, 2, 2.25}, Case{-2, -2, 0.25}, Case{inf, 2, inf}, Case{inf, -3, 0},
                        Case{-2, 3e9, inf}, Case{1, NaN, 1}, Case{huge, 2, inf},
                        // In float the first of these powers is 0; in double it takes pow to 1.
                        Case{7, 1e-50, 1}, Case{-5, 1, 5}, Case{-0.5, -1, 2}, Case{-1, -inf, 1}}) {
    T element{};
    std::memcpy(&element, std::vector<R>{static_cast<R>(c.value)}.data(), sizeof(R));
    const GuardedArray<T> input(arrayOf(std::vector<T>(300, element)));
    GuardedArray<R> output(300);
    typename gpuruntime::AbsPower::Invoker<T>()(nullptr, output.data(), input.data(), c.p, 300);
    const std::string context = inWords(c.value) + " to the " + inWords(c.p);
    const HostArray<R> actual = output.toHost();
    for (unsigned long i = 0; i < 300; ++i) expectClose(actual[i], c.power, 1, context);
  }
}

}  // namespace
