#include "gpucommon/ptxmathreal.hpp"

#include <cstring>

#include "gpucommon/testvalues.hpp"
#include "gtest/gtest.h"

using namespace gpucommon::scalarmath;

namespace {

template <class Bits, class R>
Bits bitsOf(R value) {
  static_assert(sizeof(Bits) == sizeof(R));
  Bits bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

template <class R>
struct PtxMathReal : testing::Test {};
using RealFloats = testing::Types<double, float>;
TYPED_TEST_SUITE(PtxMathReal, RealFloats);

}  // namespace

TEST(PtxMathRealConstants, haveTheirBits) {
  EXPECT_EQ(bitsOf<unsigned long>(ptxGetNaN<double>()), 0xFFF8000000000000ul);
  EXPECT_EQ(bitsOf<unsigned int>(ptxGetNaN<float>()), 0xFFC00000u);
  EXPECT_EQ(bitsOf<unsigned long>(ptxPi<double>()), 0x400921FB54442D18ul);
  EXPECT_EQ(bitsOf<unsigned int>(ptxPi<float>()), 0x40490FDBu);
}

TYPED_TEST(PtxMathReal, roundingZeroTestAndHypot) {
  using R = TypeParam;
  EXPECT_TRUE(isSame(fix(R(-2.5)), R(-2)) && isSame(fix(R(2.5)), R(2)) && isSame(fix(R(-0.5)), R(-0.0)));
  EXPECT_TRUE(isSame(fix(R(-inf)), R(-inf)) && isSame(fix(R(NaN)), R(NaN)));
  EXPECT_TRUE(ptxIsZeroAndNotNaN(R(-0.0)));
  EXPECT_FALSE(ptxIsZeroAndNotNaN(R(NaN)) || ptxIsZeroAndNotNaN(std::numeric_limits<R>::denorm_min()));
  EXPECT_EQ(gpucommon::scalarmath::hypot(R(3), R(-4)), R(5));
  EXPECT_EQ(gpucommon::scalarmath::hypot(R(-inf), R(1)), R(inf));
  EXPECT_TRUE(std::isnan(gpucommon::scalarmath::hypot(R(inf), R(NaN))));
  EXPECT_TRUE(std::isnan(gpucommon::scalarmath::hypot(R(NaN), R(inf))));
  EXPECT_LT(gpucommon::scalarmath::hypot(std::numeric_limits<R>::max() / 2, R(1)), R(inf));
}

TYPED_TEST(PtxMathReal, remainderIsCorrectedNearIntegerQuotientsOfFractions) {
  using R = TypeParam;
  const R largest = std::numeric_limits<R>::max(), ulp = std::numeric_limits<R>::epsilon();
  struct Case {
    R x, y;
    bool corrected;
  };
  // The limit is three epsilon for a quotient of 3: two beside it are near enough, four are not.
  for (const Case& c : {Case{R(1.5), R(0.5), true}, Case{R(0), R(0.1), true}, Case{R(0.75), R(-0.5), false},
                        Case{R(1.5) + ulp, R(0.5), true}, Case{R(1.5) - ulp, R(0.5), true},
                        Case{R(1.5) + 2 * ulp, R(0.5), false}, Case{R(3), R(1), false}, Case{R(3), R(0), false},
                        Case{R(inf), R(0.5), false}, Case{R(0.5), R(inf), false}, Case{R(NaN), R(0.5), false},
                        Case{R(0.5), R(NaN), false}, Case{largest, R(0.1), true}, Case{R(1e-20), R(0.1), false}}) {
    EXPECT_EQ(updateRemModForVANTICEdgeCases(c.x, c.y), c.corrected) << c.x << " by " << c.y;
  }
}

TYPED_TEST(PtxMathReal, integerPowersMultiplyFromTheLowestBit) {
  using R = TypeParam;
  // The factors are long enough for every product to be rounded: another order, or pow, gives other bits for some.
  for (R x = 401; x < 500; ++x) {
    const R x2 = x * x, x4 = x2 * x2, x8 = x4 * x4;
    const R power13 = x * x4 * x8;
    ASSERT_EQ(realPower(x, R(13)), power13);
    ASSERT_EQ(realPower(-x, R(13)), -power13);
    ASSERT_EQ(realPower(-x, R(-12)), 1 / (x4 * x8));
    ASSERT_EQ(realPower(x + R(0.1), R(13)), gpuruntime::platform::Power<R>(13)(x + R(0.1)));
  }
}

TYPED_TEST(PtxMathReal, powersOfSpecialValues) {
  using R = TypeParam;
  const double beyondInt = 4294967296.0;
  struct Case {
    double x, y, power;
  };
  for (const Case& c :
       {Case{0, 0, 1}, Case{NaN, 0, 1}, Case{1, NaN, 1}, Case{NaN, 2, NaN}, Case{2, NaN, NaN}, Case{-0.0, 3, -0.0},
        Case{-0.0, -1, -inf}, Case{-0.0, -2, inf}, Case{-2.5, 2, 6.25}, Case{-8, 1.0 / 3, NaN}, Case{inf, 0, 1},
        Case{-inf, 3, -inf}, Case{-inf, -3, -0.0}, Case{-inf, 2, inf}, Case{-inf, 0.5, inf}, Case{2, inf, inf},
        Case{2, -inf, 0}, Case{0.5, inf, 0}, Case{0, -inf, inf}, Case{1, inf, 1},
        // The truncated exponent is the largest or the smallest int: odd or even, whatever the exponent itself is.
        Case{-1, inf, -1}, Case{-1, -inf, 1}, Case{-2, inf, -inf}, Case{-2, -inf, 0}, Case{-1, beyondInt, 1},
        Case{-2, beyondInt, inf}, Case{-1, -beyondInt, 1}, Case{-1, -2147483648.0, 1}}) {
    EXPECT_TRUE(isSame(realPower(R(c.x), R(c.y)), R(c.power))) << c.x << " ^ " << c.y;
  }
  EXPECT_EQ(integerOrFloatingPower(R(-1), R(beyondInt)), -1);
}

TEST(PtxMathRealPower, repairsOnlyEvenExponentsBeyondInt) {
  EXPECT_EQ(realPower(-1.0, 2147483647.0), -1);
  EXPECT_EQ(realPower(-1.0, -2147483647.0), -1);
  EXPECT_EQ(realPower(-1.0, 2147483649.0), -1);
  EXPECT_EQ(realPower(-1.0, -2147483649.0), 1);
  EXPECT_EQ(realPower(-1.0f, 16777215.0f), -1);
}
