#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
T exactProduct(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    using R = gpuruntime::RealOf<T>;
    if constexpr (std::is_floating_point_v<R>) {
      if (a.y == 0 && b.y == 0) return {a.x * b.x, a.y};
      // Compilers fuse a difference beside a sum, even where they are told not to.
      const volatile R rr = a.x * b.x, ii = a.y * b.y, ri = a.x * b.y, ir = a.y * b.x;
      return {rr - ii, ri + ir};
    } else {
      using Wrapping = unsigned long long;
      const Wrapping ar = static_cast<Wrapping>(a.x), ai = static_cast<Wrapping>(a.y);
      const Wrapping br = static_cast<Wrapping>(b.x), bi = static_cast<Wrapping>(b.y);
      return {static_cast<R>(ar * br - ai * bi), static_cast<R>(ar * bi + ai * br)};
    }
  } else if constexpr (std::is_same_v<T, bool>) {
    return a && b;
  } else if constexpr (std::is_floating_point_v<T>) {
    return a * b;
  } else if constexpr (sizeof(T) == 8) {
    return static_cast<T>(static_cast<unsigned long long>(a) * static_cast<unsigned long long>(b));
  } else {
    return clampedTo<T>(static_cast<__int128>(a) * b);
  }
}

template <class T>
struct ProdTest : ::testing::Test {
  static void expectProducts(const HostArray<T>& in, const Shape& shape) {
    using D = gpuruntime::DoubleOf<T>;
    expectReduced(in, shape, reduceInOrder(in, shape, one<T>(), sameElement<T>, exactProduct<T>),
                  [](auto... arguments) { typename gpuruntime::ProdNative::Invoker<T>()(nullptr, arguments...); });
    // More complex integers overflow; the arithmetic layer's tests hold what becomes of that.
    if (isComplex<T> && std::is_integral_v<gpuruntime::RealOf<T>> && shape.L > 64) return;
    expectReduced(in, shape, reduceInOrder(in, shape, one<D>(), asDouble<T>, exactProduct<D>),
                  [](auto... arguments) { typename gpuruntime::ProdAsDouble::Invoker<T>()(nullptr, arguments...); });
  }
};
TYPED_TEST_SUITE(ProdTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(ProdTest, MultipliesInTheStatedOrder) {
  for (const Shape& shape : reductionShapes(sizeof(TypeParam))) {
    this->expectProducts(factors<TypeParam>(shape.N), shape);
    if (shape.N > 200 && shape.N < 5000) {
      // Zeros of both signs, and integers that leave the range at once.
      HostArray<TypeParam> in = summands<TypeParam>(shape.N);
      this->expectProducts(in, {shape.N, 2, 1});
      this->expectProducts(in, {shape.N, 2, 5});
    }
  }
}

template <class T>
struct ProdNaNTest : ::testing::Test {};
TYPED_TEST_SUITE(ProdNaNTest, TestTypes<gpuruntime::RealFloatTypes>);

TYPED_TEST(ProdNaNTest, SpreadsNaNAndInfinities) {
  const HostArray<TypeParam> in = trickyValues<TypeParam>();
  for (const unsigned long S : {1, 2}) ProdTest<TypeParam>::expectProducts(in, {in.size(), 3, S});
}

// Infinity times (0, 1) is recovered from the NaN of the plain product.
TEST(Prod, RecoversComplexInfinities) {
  using T = double2;
  const T infinite{std::numeric_limits<double>::infinity(), 0}, imaginary{0, 1};
  expectReduced(arrayOf(std::vector<T>{infinite, infinite, imaginary, imaginary}), {4, 2, 2},
                std::vector<T>{{0, infinite.x}, {0, infinite.x}},
                [](auto... arguments) { gpuruntime::ProdNative::Invoker<T>()(nullptr, arguments...); });
}

}  // namespace
