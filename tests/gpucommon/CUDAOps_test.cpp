#include "gpucommon/CUDAOps.hpp"

#include "gpucommon/testvalues.hpp"
#include "gtest/gtest.h"

using namespace gpucommon;

// Both operands over all values of an 8-bit type, over edge values of a wider one.
template <class T>
std::vector<T> operands() {
  if (sizeof(T) > 1) return edgeValues<T>();
  std::vector<T> all;
  for (int bits = 0; bits < 256; ++bits) all.push_back(static_cast<T>(bits));
  return all;
}

template <class T>
T expectedProduct(T a, T b) {
  if constexpr (sizeof(T) == 8) return static_cast<T>(ExactModulo(a) * ExactModulo(b));
  return clamped<T>(Exact(a) * b);
}

TEST(CUDAOps, integersSaturateAndSixtyFourBitProductsWrap) {
  forEachType(gpuruntime::RealNumericTypes{}, [](auto type) {
    using T = decltype(type);
    if constexpr (std::is_integral_v<T>) {
      for (const T a : operands<T>()) {
        for (const T b : operands<T>()) {
          ASSERT_EQ(add(a, b), clamped<T>(Exact(a) + b)) << +a << " + " << +b;
          ASSERT_EQ(subtract(a, b), clamped<T>(Exact(a) - b)) << +a << " - " << +b;
          ASSERT_EQ(multiply(a, b), expectedProduct(a, b)) << +a << " * " << +b;
        }
      }
    }
  });
}

TEST(CUDAOps, integerComplexSumsSaturateByPartAndProductsWrap) {
  forEachType(gpuruntime::ComplexTypes{}, [](auto type) {
    using C = decltype(type);
    using R = typename CUDAComplexToReal<C>::type;
    if constexpr (std::is_integral_v<R>) {
      const std::vector<R> values = edgeValues<R>();
      for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
          const C a{values[i], values[(i + 7) % values.size()]}, b{values[j], values[(3 * j + i) % values.size()]};
          const C sum = add(a, b), difference = subtract(a, b), product = multiply(a, b);
          ASSERT_EQ(sum.x, clamped<R>(Exact(a.x) + b.x));
          ASSERT_EQ(sum.y, clamped<R>(Exact(a.y) + b.y));
          ASSERT_EQ(difference.x, clamped<R>(Exact(a.x) - b.x));
          ASSERT_EQ(difference.y, clamped<R>(Exact(a.y) - b.y));
          const ExactModulo ar(a.x), ai(a.y), br(b.x), bi(b.y);
          ASSERT_EQ(product.x, static_cast<R>(ar * br - ai * bi));
          ASSERT_EQ(product.y, static_cast<R>(ai * br + ar * bi));
        }
      }
    }
  });
}

TEST(CUDAOps, logicalAndFloatingOperations) {
  for (const bool a : {false, true}) {
    for (const bool b : {false, true}) {
      EXPECT_EQ(add(a, b), a || b);
      EXPECT_EQ(multiply(a, b), a && b);
    }
  }
  EXPECT_EQ(add(0.1f, 0.2f), 0.3f);
  EXPECT_TRUE(std::isnan(subtract(inf, inf)));
  EXPECT_TRUE(isSame(multiply(-0.0, 2.0), -0.0));
  EXPECT_TRUE(isSame(add(double2{1, -0.0}, double2{2, -0.0}), double2{3, -0.0}));
  EXPECT_TRUE(isSame(subtract(float2{1, 5}, float2{3, 2}), float2{-2, 3}));
  EXPECT_TRUE(isSame(multiply(float2{1, 2}, float2{3, 4}), float2{-5, 10}));
  // A plain product would have a NaN real part.
  EXPECT_TRUE(isSame(multiply(double2{inf, 0}, double2{0, 1}), double2{0, inf}));
}
