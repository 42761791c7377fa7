#include "support/reductions.hpp"

namespace {

using namespace testsupport;

template <class T>
T exactSum(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    return {exactSum(a.x, b.x), exactSum(a.y, b.y)};
  } else if constexpr (std::is_same_v<T, bool>) {
    return a || b;
  } else if constexpr (std::is_floating_point_v<T>) {
    return a + b;
  } else {
    return clampedTo<T>(static_cast<__int128>(a) + b);
  }
}

template <class T>
struct SumTest : ::testing::Test {
  static void expectSums(const HostArray<T>& in, const Shape& shape) {
    using D = gpuruntime::DoubleOf<T>;
    expectReduced(in, shape, reduceInOrder(in, shape, T{}, sameElement<T>, exactSum<T>),
                  [](auto... arguments) { typename gpuruntime::SumNative::Invoker<T>()(nullptr, arguments...); });
    expectReduced(in, shape, reduceInOrder(in, shape, D{}, asDouble<T>, exactSum<D>),
                  [](auto... arguments) { typename gpuruntime::SumAsDouble::Invoker<T>()(nullptr, arguments...); });
  }
};
TYPED_TEST_SUITE(SumTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(SumTest, AddsInTheStatedOrder) {
  for (const Shape& shape : reductionShapes(sizeof(TypeParam))) {
    this->expectSums(summands<TypeParam>(shape.N), shape);
  }
}

TYPED_TEST(SumTest, SpreadsNaNAndInfinities) {
  const HostArray<TypeParam> in = trickyValues<TypeParam>();
  for (const unsigned long L : {1, 2, 5, 300}) this->expectSums(in, {in.size(), L, 1});
  this->expectSums(in, {in.size(), 3, 4});
}

template <class Family, class Acc, class In>
void expectResults(const std::vector<In>& values, unsigned long S, const std::vector<Acc>& expected) {
  expectReduced(arrayOf(values), {values.size(), values.size() / S, S}, expected,
                [](auto... arguments) { typename Family::template Invoker<In>()(nullptr, arguments...); });
}

TEST(Sum, ClampsAndLosesMinusZeroByItsOrder) {
  using gpuruntime::SumNative;
  using Char = signed char;
  expectResults<SumNative>(std::vector<Char>{127, 1, -1}, 1, std::vector<Char>{127});
  expectResults<SumNative>(std::vector<Char>{127, 127, 1, 1, -1, -1}, 2, std::vector<Char>{126, 126});
  expectResults<SumNative>(std::vector<double>{-0.0}, 1, std::vector<double>{0.0});
  expectResults<SumNative>(std::vector<double>{-0.0, -0.0}, 2, std::vector<double>{-0.0, -0.0});
  expectResults<SumNative>(std::vector<unsigned char>{200, 100}, 1, std::vector<unsigned char>{255});
  expectResults<gpuruntime::SumAsDouble>(std::vector<unsigned char>{200, 100}, 1, std::vector<double>{300});
}

}  // namespace
