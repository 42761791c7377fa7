#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
T conjugated(T value) {
  if constexpr (isComplex<T>) {
    using Real = decltype(T::x);
    // In unsigned arithmetic the lowest integer has a negative, itself.
    if constexpr (std::is_floating_point_v<Real>) {
      value.y = std::copysign(value.y, std::signbit(value.y) ? Real(1) : Real(-1));
    } else {
      value.y = static_cast<Real>(0ULL - static_cast<unsigned long long>(value.y));
    }
  }
  return value;
}

struct Shape {
  unsigned long numX, numY;
};

// Around the tile of 16, long thin ones, and one large enough to be written past the caches by several tasks.
const Shape shapes[] = {{1, 1},   {1, 40},  {40, 1},  {15, 16},  {16, 16},    {17, 33},
                        {32, 48}, {48, 32}, {257, 3}, {100, 75}, {2048, 1040}};

template <class T>
struct TransposeTest : ::testing::Test {};
TYPED_TEST_SUITE(TransposeTest, TestTypes<gpuruntime::AllTypes>);

template <class Family, class T, class Change>
void checkOutOfPlace(const Shape& shape, unsigned long offset, Change change) {
  const HostArray<T> in = HostArray<T>::counting(shape.numX * shape.numY);
  const GuardedArray<T> input(in, 1);
  GuardedArray<T> output(in.size(), offset);
  typename Family::template Invoker<T>()(nullptr, output.data(), input.data(), shape.numX, shape.numY);
  expectElements(
      output.toHost(),
      [&](unsigned long i) {
        const unsigned long x = i / shape.numY, y = i % shape.numY;
        return change(in[y * shape.numX + x]);
      },
      std::to_string(shape.numX) + " by " + std::to_string(shape.numY));
}

template <class Family, class T, class Change>
void checkInPlace(unsigned long side, Change change) {
  const HostArray<T> in = HostArray<T>::counting(side * side);
  GuardedArray<T> data(in);
  typename Family::template Invoker<T>()(nullptr, data.data(), data.data(), side, side);
  expectElements(
      data.toHost(), [&](unsigned long i) { return change(in[i % side * side + i / side]); },
      "in place, side " + std::to_string(side));
}

TYPED_TEST(TransposeTest, MovesElementsAsTheyAre) {
  using T = TypeParam;
  const auto same = [](T value) { return value; };
  for (const Shape& shape : shapes) {
    checkOutOfPlace<gpuruntime::Transpose, T>(shape, 0, same);
    checkOutOfPlace<gpuruntime::Transpose, T>(shape, 3, same);
  }
  for (const unsigned long side : {1UL, 15UL, 16UL, 17UL, 48UL, 100UL}) {
    checkInPlace<gpuruntime::Transpose, T>(side, same);
  }
}

TYPED_TEST(TransposeTest, ConjugatesEachElementOnce) {
  using T = TypeParam;
  for (const Shape& shape : shapes) checkOutOfPlace<gpuruntime::CTranspose, T>(shape, 0, conjugated<T>);
  for (const unsigned long side : {1UL, 16UL, 17UL, 48UL}) {
    checkInPlace<gpuruntime::CTranspose, T>(side, conjugated<T>);
  }
}

TYPED_TEST(TransposeTest, LeavesAllAloneWithoutElements) {
  using T = TypeParam;
  GuardedArray<T> output(4);
  const GuardedArray<T> input(4);
  typename gpuruntime::Transpose::Invoker<T>()(nullptr, output.data(), input.data(), 0, 4);
  typename gpuruntime::CTranspose::Invoker<T>()(nullptr, output.data(), input.data(), 4, 0);
  expectUntouched(output.toHost());
}

// In place is also right for vectors, whose data does not move, and for what lies in one tile.
TEST(Transpose, WorksInPlaceOnVectorsAndSmallRectangles) {
  for (const Shape& shape : {Shape{1, 100}, Shape{100, 1}, Shape{5, 16}, Shape{16, 2}}) {
    const HostArray<int> in = HostArray<int>::counting(shape.numX * shape.numY);
    GuardedArray<int> data(in);
    gpuruntime::Transpose::Invoker<int>()(nullptr, data.data(), data.data(), shape.numX, shape.numY);
    expectElements(data.toHost(), [&](unsigned long i) { return in[i % shape.numY * shape.numX + i / shape.numY]; });
  }
}

TEST(CTranspose, NegatesInTwosComplementAndFlipsSigns) {
  HostArray<char2> bytes(1);
  bytes[0] = {3, -128};
  GuardedArray<char2> narrow(bytes);
  gpuruntime::CTranspose::Invoker<char2>()(nullptr, narrow.data(), narrow.data(), 1, 1);
  EXPECT_EQ(narrow.toHost()[0].y, -128);

  HostArray<double2> zeros(2);
  zeros[0] = {1, 0.0};
  zeros[1] = {1, std::nan("")};
  const GuardedArray<double2> input(zeros);
  GuardedArray<double2> output(2);
  gpuruntime::CTranspose::Invoker<double2>()(nullptr, output.data(), input.data(), 2, 1);
  EXPECT_TRUE(sameBits(output.toHost()[0].y, -0.0));
  EXPECT_TRUE(std::isnan(output.toHost()[1].y));
}

}  // namespace
