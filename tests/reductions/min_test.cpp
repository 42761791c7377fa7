#include "support/extremes.hpp"

namespace {

using namespace testsupport;

template <class T>
struct MinTest : ::testing::Test {};
TYPED_TEST_SUITE(MinTest, TestTypes<gpuruntime::RealAndComplexFloatTypes>);

TYPED_TEST(MinTest, FindsTheFirstOfTheBest) {
  for (const Shape& shape : reductionShapes(sizeof(TypeParam))) {
    expectExtremes<gpuruntime::Min, gpuruntime::MinWithIndex, false, TypeParam>(shape, 1 + shape.N % 3);
  }
}

TYPED_TEST(MinTest, TellsNearlyEqualMagnitudesApart) {
  if constexpr (isComplex<TypeParam>) {
    for (const Shape& shape : {Shape{40000, 20000, 1}, Shape{60000, 100, 300}}) {
      expectExtremes<gpuruntime::Min, gpuruntime::MinWithIndex, false, TypeParam>(shape, 1,
                                                                                  nearlyEqual<TypeParam>(shape.N));
    }
  }
}

}  // namespace
