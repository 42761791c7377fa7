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

}  // namespace
