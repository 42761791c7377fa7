#include "gpucommon/CUDATraits.hpp"

#include "gpucommon/testvalues.hpp"
#include "gtest/gtest.h"

using namespace gpucommon;

TEST(CUDATraits, zeroAndOneOfEveryType) {
  forEachType(gpuruntime::AllTypes{}, [](auto value) {
    using T = decltype(value);
    using Traits = CUDATraits<T>;
    EXPECT_TRUE(Traits::isZero(Traits::getZero()));
    EXPECT_FALSE(Traits::isZero(Traits::getOne()));
    EXPECT_FALSE(Traits::isNaN(Traits::getOne()));
    if constexpr (Traits::iscomplex) {
      EXPECT_EQ(Traits::getOne().x, 1);
      EXPECT_EQ(Traits::getOne().y, 0);
      EXPECT_FALSE(Traits::isZero(T{0, 1}));
    } else {
      EXPECT_EQ(Traits::getOne(), T(1));
      EXPECT_TRUE(Traits::isequalwithequalnans(T(1), T(1)));
      EXPECT_FALSE(Traits::isequalwithequalnans(T(1), T(0)));
    }
  });
}

template <class R>
void expectFloatingPredicates() {
  using C = typename CUDARealToComplex<R>::type;
  const R nan = std::numeric_limits<R>::quiet_NaN(), inf = std::numeric_limits<R>::infinity();
  const R smallest = std::numeric_limits<R>::denorm_min(), largest = std::numeric_limits<R>::max();
  using Real = CUDATraits<R>;
  using Complex = CUDATraits<C>;
  EXPECT_TRUE(Real::isZero(R(-0.0)));
  for (const R value : {nan, smallest, -smallest}) {
    EXPECT_FALSE(Real::isZero(value));
    EXPECT_FALSE(Complex::isZero(C{value, 0}));
    EXPECT_FALSE(Complex::isZero(C{0, value}));
  }
  for (const R value : {inf, -inf, largest, nan, R(0)}) {
    EXPECT_EQ(Real::isInf(value), std::isinf(value));
    EXPECT_EQ(Real::isNaN(value), std::isnan(value));
    EXPECT_EQ(Complex::isInf(C{1, value}) && Complex::isInf(C{value, nan}), std::isinf(value));
    EXPECT_EQ(Complex::isNaN(C{inf, value}) && Complex::isNaN(C{value, 1}), std::isnan(value));
    EXPECT_EQ(Real::isequal(value, value), !std::isnan(value));
    EXPECT_TRUE(Real::isequalwithequalnans(value, value));
    EXPECT_FALSE(Real::isequalwithequalnans(value, 1) || Real::isequalwithequalnans(1, value));
  }
}

TEST(CUDATraits, nanInfinityAndZeroOfFloatingTypes) {
  expectFloatingPredicates<double>();
  expectFloatingPredicates<float>();
}
