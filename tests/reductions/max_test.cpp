#include "support/extremes.hpp"

namespace {

using namespace testsupport;

template <class T>
struct MaxTest : ::testing::Test {};
TYPED_TEST_SUITE(MaxTest, TestTypes<gpuruntime::RealAndComplexFloatTypes>);

TYPED_TEST(MaxTest, FindsTheFirstOfTheBest) {
  for (const Shape& shape : reductionShapes(sizeof(TypeParam))) {
    expectExtremes<gpuruntime::Max, gpuruntime::MaxWithIndex, true, TypeParam>(shape, 1 + shape.N % 3);
  }
}

TYPED_TEST(MaxTest, TellsNearlyEqualMagnitudesApart) {
  if constexpr (isComplex<TypeParam>) {
    for (const Shape& shape : {Shape{40000, 20000, 1}, Shape{60000, 100, 300}}) {
      expectExtremes<gpuruntime::Max, gpuruntime::MaxWithIndex, true, TypeParam>(shape, 1,
                                                                                 nearlyEqual<TypeParam>(shape.N));
    }
  }
}

}  // namespace
