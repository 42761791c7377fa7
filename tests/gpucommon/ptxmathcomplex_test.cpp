#include "gpucommon/ptxmathcomplex.hpp"

#include <complex>
#include <random>
#include <string>
#include <vector>

#include "gpucommon/testvalues.hpp"
#include "gtest/gtest.h"
#include "support/complexorder.hpp"

using namespace gpucommon::scalarmath;

namespace {

using Reference = std::complex<long double>;

template <class C>
Reference asReference(const C& z) {
  return {z.x, z.y};
}

// Distance of a result from its reference in units of epsilon of the result's magnitude.
template <class C>
long double epsilonsFrom(const Reference& expected, const C& z) {
  using R = decltype(z.x + 0);
  return std::abs(asReference(z) - expected) / (std::abs(expected) * std::numeric_limits<R>::epsilon());
}

template <class C>
class PtxMathComplex : public testing::Test {
 protected:
  using R = typename gpucommon::CUDAComplexToReal<C>::type;

  R random(R low, R high) { return std::uniform_real_distribution<R>(low, high)(generator_); }
  C randomComplex() { return {random(-2, 2), random(-2, 2)}; }

  // Worked cases stand in double, and must hold for both types.
  static C narrow(const double2& z) { return {static_cast<R>(z.x), static_cast<R>(z.y)}; }

  template <class Operation>
  static void expect(Operation operation, const double2& a, const double2& b, const double2& expected) {
    const C result = operation(narrow(a), narrow(b));
    EXPECT_TRUE(isSame(result, narrow(expected)))
        << "(" << a.x << ", " << a.y << "), (" << b.x << ", " << b.y << "): (" << result.x << ", " << result.y << ")";
  }

 private:
  std::mt19937 generator_{20240607};
};

using ComplexFloats = testing::Types<double2, float2>;
TYPED_TEST_SUITE(PtxMathComplex, ComplexFloats);

}  // namespace

TYPED_TEST(PtxMathComplex, partsInOrderOfMagnitude) {
  using C = TypeParam;
  EXPECT_TRUE(isSame(complexifyreal<C>(-3), C{-3, 0}));
  EXPECT_TRUE(isSame(orderRealImagValues(C{-3, 2}), C{3, 2}) && isSame(orderRealImagValues(C{2, -3}), C{3, 2}));
  EXPECT_TRUE(isSame(orderRealImagValues(this->narrow({7, NaN})), this->narrow({NaN, 7})));
  EXPECT_TRUE(isSame(orderRealImagValues(this->narrow({NaN, 7})), this->narrow({7, NaN})));
}

// The random operands of these tests have neither zero parts nor parts of equal magnitude.
TYPED_TEST(PtxMathComplex, productsAndQuotientsRoundStepByStep) {
  using C = TypeParam;
  for (int i = 0; i < 20000; ++i) {
    const C a = this->randomComplex(), b = this->randomComplex();
    // A store to memory rounds each step: a fused one would show in the last bits.
    volatile auto rr = a.x * b.x, ii = a.y * b.y, ri = a.x * b.y, ir = a.y * b.x;
    ASSERT_TRUE(isSame(ctimes(a, b), C{rr - ii, ri + ir}));

    const bool realLarger = std::abs(b.x) > std::abs(b.y);
    volatile auto ratio = realLarger ? b.y / b.x : b.x / b.y;
    volatile auto product = realLarger ? ratio * a.x : ratio * a.y;
    const auto d = realLarger ? std::fma(ratio, b.y, b.x) : std::fma(ratio, b.x, b.y);
    const C quotient = realLarger ? C{std::fma(ratio, a.y, a.x) / d, (a.y - product) / d}
                                  : C{std::fma(ratio, a.x, a.y) / d, (product - a.x) / d};
    ASSERT_TRUE(isSame(cdivide(a, b), quotient));
    ASSERT_TRUE(isSame(reciprocal(b), realLarger ? C{1 / d, -ratio / d} : C{ratio / d, -1 / d}));

    ASSERT_LT(epsilonsFrom(asReference(a) * asReference(b), ctimes(a, b)), 2);
    ASSERT_LT(epsilonsFrom(asReference(a) / asReference(b), cdivide(a, b)), 4);
    ASSERT_LT(epsilonsFrom(Reference(1) / asReference(b), reciprocal(b)), 4);
  }
}

TYPED_TEST(PtxMathComplex, reciprocalOfSpecialValues) {
  const auto inverse = [](const TypeParam& z, const TypeParam&) { return reciprocal(z); };
  const double2 one{1, 0};
  this->expect(inverse, {4, -0.0}, one, {0.25, 0});
  this->expect(inverse, {0, 0}, one, {inf, 0});
  this->expect(inverse, {-0.0, 0}, one, {-inf, 0});
  this->expect(inverse, {-0.0, 4}, one, {0, -0.25});
  this->expect(inverse, {2, -2}, one, {0.25, 0.25});
  this->expect(inverse, {-inf, inf}, one, {-0.0, -0.0});
  this->expect(inverse, {inf, 1}, one, {0, -0.0});
  this->expect(inverse, {1, -inf}, one, {0, 0});
  this->expect(inverse, {NaN, 0}, one, {NaN, 0});
  this->expect(inverse, {NaN, 1}, one, {NaN, NaN});
}

TYPED_TEST(PtxMathComplex, quotientsOfSpecialValues) {
  const auto divide = [](const TypeParam& a, const TypeParam& b) { return cdivide(a, b); };
  this->expect(divide, {1, 0}, {0, 0}, {inf, 0});
  this->expect(divide, {0, 1}, {0, 0}, {0, inf});
  this->expect(divide, {0, 0}, {0, 0}, {NaN, 0});
  this->expect(divide, {6, 3}, {-2, -0.0}, {-3, -1.5});
  this->expect(divide, {-0.0, 3}, {-2, 0}, {0, -1.5});
  this->expect(divide, {3, -0.0}, {-2, 0}, {-1.5, 0});
  this->expect(divide, {0, NaN}, {2, 0}, {0, NaN});
  this->expect(divide, {6, 3}, {0, 2}, {1.5, -3});
  this->expect(divide, {0, 3}, {-0.0, -2}, {-1.5, 0});
  this->expect(divide, {3, 0}, {0, -2}, {0, 1.5});
  this->expect(divide, {0, -0.0}, {0, 2}, {-0.0, 0});
  this->expect(divide, {3, 1}, {2, -2}, {0.5, 1});
  this->expect(divide, {3, 1}, {-2, 2}, {-0.5, -1});
  this->expect(divide, {1, 2}, {inf, -inf}, {-0.0, 0});
  // Equal terms leave +0 in either order of subtraction.
  this->expect(divide, {4, 2}, {2, 1}, {2, 0});
  this->expect(divide, {2, 4}, {1, 2}, {2, 0});
  this->expect(divide, {1, 1}, {NaN, 1}, {NaN, NaN});
}

TYPED_TEST(PtxMathComplex, productsOfSpecialValues) {
  const auto times = [](const TypeParam& a, const TypeParam& b) { return ctimes(a, b); };
  this->expect(times, {-2, -0.0}, {3, 0}, {-6, -0.0});
  this->expect(times, {inf, 0}, {0, -0.0}, {NaN, 0});
  // Infinity times zero: NaN products become zeros of their sign.
  this->expect(times, {inf, 0}, {0, 1}, {0, inf});
  this->expect(times, {-inf, 0}, {0, 1}, {-0.0, -inf});
  this->expect(times, {0, 1}, {inf, 0}, {0, inf});
  this->expect(times, {2, 0}, {inf, 1}, {inf, 2});
  this->expect(times, {inf, 1}, {-2, 0}, {-inf, -2});
  this->expect(times, {-inf, 1}, {0, 1}, {-1, -inf});
  this->expect(times, {inf, inf}, {0, 2}, {-inf, inf});
  // Infinity times finite: the direction survives, and opposite infinities cancel by their scaled parts.
  this->expect(times, {inf, 5}, {3, 2}, {inf, inf});
  this->expect(times, {inf, inf}, {2, 1}, {inf, inf});
  this->expect(times, {inf, inf}, {1, 1}, {0, inf});
  this->expect(times, {-2, 1}, {inf, -inf}, {-inf, inf});
  this->expect(times, {NaN, 0}, {0, 1}, {NaN, NaN});
  this->expect(times, {NaN, 1}, {2, inf}, {NaN, NaN});
  this->expect(times, {0, 1}, {NaN, inf}, {-inf, 0});
  // Finite factors whose products overflow to opposite infinities.
  const double largest = std::numeric_limits<typename TestFixture::R>::max();
  this->expect(times, {largest, largest}, {2, 2}, {0, inf});
}

TYPED_TEST(PtxMathComplex, exponentialAndLogarithm) {
  using C = TypeParam;
  constexpr bool isDouble = std::is_same_v<C, double2>;
  for (int i = 0; i < 20000; ++i) {
    const C z{this->random(-20, 20), this->random(-20, 20)};
    ASSERT_LT(epsilonsFrom(std::exp(asReference(z)), cexp(z)), 4);
    ASSERT_LT(epsilonsFrom(std::log(asReference(z)), clog(z)), 4);
  }
  // Beyond the limit the magnitude is applied in two halves.
  const C beyond = isDouble ? C{710, decltype(C::x)(0.8)} : C{89, decltype(C::x)(0.8)};
  EXPECT_EQ(std::exp(beyond.x), decltype(C::x)(inf));
  EXPECT_LT(epsilonsFrom(std::exp(asReference(beyond)), cexp(beyond)), isDouble ? 4 : 64);

  const auto exponential = [](const C& z, const C&) { return cexp(z); };
  const auto logarithm = [](const C& z, const C&) { return clog(z); };
  const double2 one{1, 0};
  this->expect(exponential, {0, -0.0}, one, {1, 0});
  this->expect(exponential, {inf, 0}, one, {inf, 0});
  this->expect(exponential, {1, inf}, one, {NaN, NaN});
  this->expect(exponential, {-inf, 2}, one, {-0.0, 0});
  const double pi = 3.14159265358979323846;
  this->expect(logarithm, {-1, 0}, one, {0, pi});
  this->expect(logarithm, {-1, -0.0}, one, {0, -pi});
  this->expect(logarithm, {1, -0.0}, one, {0, 0});
  this->expect(logarithm, {-0.0, -0.0}, one, {-inf, 0});
  this->expect(logarithm, {NaN, 0}, one, {NaN, 0});
  this->expect(logarithm, {0, -1}, one, {0, -pi / 2});
  this->expect(logarithm, {-inf, -2}, one, {inf, -pi});
  // The magnitude is infinite, but one of its parts no number.
  this->expect(logarithm, {inf, NaN}, one, {NaN, NaN});
  const auto large = std::numeric_limits<decltype(C::x)>::max() * decltype(C::x)(0.9);
  EXPECT_LT(epsilonsFrom(std::log(asReference(C{large, large})), clog(C{large, large})), 2);
}

TYPED_TEST(PtxMathComplex, powersMultiplyForIntegerExponents) {
  using C = TypeParam;
  for (int i = 0; i < 2000; ++i) {
    const C a = this->randomComplex();
    ASSERT_TRUE(isSame(cdotexp(a, C{2, 0}), ctimes(a, a)));
    const C a2 = ctimes(a, a), a4 = ctimes(a2, a2);
    const C a5 = ctimes(a4, ctimes(a, C{1, 0}));
    ASSERT_TRUE(isSame(cdotexp(a, C{5, -0.0f}), a5));
    ASSERT_TRUE(isSame(cdotexp(a, C{-5, 0}), reciprocal(a5)));
    ASSERT_LT(epsilonsFrom(std::pow(asReference(a), 5), a5), 16);
  }
  const auto power = [](const C& a, const C& b) { return cdotexp(a, b); };
  this->expect(power, {-2, 0}, {3, 0}, {-8, 0});
  this->expect(power, {-2, -0.0}, {3, 0}, {-8, -0.0});
  this->expect(power, {0, -0.0}, {2, 0}, {0, -0.0});
  this->expect(power, {-0.0, 0}, {-1, 0}, {-inf, 0});
  this->expect(power, {0, 0}, {0, 0}, {1, 0});
  this->expect(power, {inf, -inf}, {-0.0, 0}, {1, 0});
  this->expect(power, {NaN, 0}, {0, 0}, {NaN, NaN});
  this->expect(power, {0, NaN}, {0, 0}, {NaN, NaN});
  // The first exponent is beyond every integer type.
  this->expect(power, {1, 0}, {1e30, 0}, {1, 0});
  this->expect(power, {-1, 0}, {16777215, 0}, {-1, 0});
}

TYPED_TEST(PtxMathComplex, powersByRealPowerAndByLogarithm) {
  using C = TypeParam;
  using R = decltype(C::x);
  const auto power = [](const C& a, const C& b) { return cdotexp(a, b); };
  const auto general = [](const C& a, const C& b) { return cexp(ctimes(clog(a), b)); };
  for (int i = 0; i < 20000; ++i) {
    const C a = this->randomComplex(), b = this->randomComplex();
    ASSERT_TRUE(isSame(power(a, b), general(a, b)));
    // The angle's error grows with the logarithm of the result.
    ASSERT_LT(epsilonsFrom(std::pow(asReference(a), asReference(b)), power(a, b)), 64);
    const C positive{std::abs(a.x), -0.0f}, real{b.x, 0};
    ASSERT_TRUE(isSame(power(positive, real), C{realPower(positive.x, b.x), 0}));
    ASSERT_TRUE(isSame(power(a, real), general(a, real)));
  }
  this->expect(power, {4, 0}, {0.5, 0}, {2, 0});
  this->expect(power, {0, 0}, {-0.5, 0}, {inf, 0});
  this->expect(power, {-2, 0}, {inf, 0}, {-inf, 0});
  this->expect(power, {-inf, 0}, {0.5, 0}, {inf, 0});
  this->expect(power, {NaN, 0}, {0.5, 0}, {NaN, 0});
  this->expect(power, {-2, 0}, {NaN, 0}, {NaN, 0});
  this->expect(power, {1, 0}, {NaN, 0}, {1, 0});
  this->expect(power, {NaN, 1}, {2, 0}, {NaN, NaN});
  this->expect(power, {1, 0}, {1, NaN}, {NaN, NaN});
  // A negative base with a fraction, and a base with an imaginary part, take the general path.
  const C cubeRoot = cdotexp(C{-8, 0}, C{R(1) / 3, 0});
  EXPECT_LT(epsilonsFrom(Reference(1, std::sqrt(3.0L)), cubeRoot), 4);
}

TYPED_TEST(PtxMathComplex, orderByMagnitudePartsAndAngle) {
  using C = TypeParam;
  using R = decltype(C::x);
  using Limits = std::numeric_limits<R>;
  const R parts[] = {0,
                     R(-0.0),
                     Limits::denorm_min(),
                     1,
                     -1,
                     3,
                     -4,
                     5,
                     Limits::max(),
                     -Limits::max() / 2,
                     Limits::infinity(),
                     -Limits::infinity(),
                     Limits::quiet_NaN()};
  std::vector<C> values;
  for (const R x : parts) {
    for (const R y : parts) values.push_back({x, y});
  }
  for (int i = 0; i < 100; ++i) values.push_back(this->randomComplex());
  for (const C& a : values) {
    for (const C& b : values) {
      const int order = testsupport::complexOrder(a, b);
      const bool aIsLast = std::isnan(std::hypot(a.x, a.y)), bIsLast = std::isnan(std::hypot(b.x, b.y));
      const std::string pair = "(" + std::to_string(a.x) + ", " + std::to_string(a.y) + "), (" + std::to_string(b.x) +
                               ", " + std::to_string(b.y) + ")";
      ASSERT_EQ(cmincompare(a, b), order > 0) << pair;
      ASSERT_EQ(cmaxcompare(a, b), order < 0) << pair;
      ASSERT_EQ(cminnancompare(a, b), !aIsLast && (bIsLast || order > 0)) << pair;
      ASSERT_EQ(cmaxnancompare(a, b), !aIsLast && (bIsLast || order < 0)) << pair;
    }
  }
  // Equal magnitudes: the same parts go by angle, others by the smaller part first.
  EXPECT_TRUE(cmincompare(this->narrow({1, -1}), this->narrow({1, 1})));
  EXPECT_TRUE(cmincompare(this->narrow({1, 0}), this->narrow({-1, 0})));
  EXPECT_TRUE(cmincompare(this->narrow({1, 0}), this->narrow({0, 1})));
  // Magnitudes that overflow are told apart; an infinity beside a NaN is infinite, and ties with every infinity.
  const R large = Limits::max();
  EXPECT_TRUE(cmincompare(C{large, large / 2}, C{-large, -large}));
  EXPECT_FALSE(cmincompare(this->narrow({inf, NaN}), this->narrow({inf, 1})) ||
               cmaxcompare(this->narrow({inf, NaN}), this->narrow({inf, 1})));
  EXPECT_TRUE(cminnancompare(this->narrow({NaN, inf}), this->narrow({NaN, 1})));
}
