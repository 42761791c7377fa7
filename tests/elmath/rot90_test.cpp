#include "support/familytest.hpp"

namespace {

using namespace testsupport;

struct Stack {
  unsigned long numX, numY, numPages;
};

const Stack stacks[] = {{1, 1, 1},   {2, 2, 1},   {20, 1, 1},  {1, 20, 2},   {5, 7, 3},
                        {16, 16, 2}, {17, 33, 2}, {40, 31, 3}, {100, 16, 1}, {1040, 1056, 2}};

template <class T>
struct Rot90Test : ::testing::Test {};
TYPED_TEST_SUITE(Rot90Test, TestTypes<gpuruntime::AllTypes>);

// Where the input's element (x, y) of a page goes: an index in the output's page.
unsigned long turnedIndex(const Stack& stack, unsigned long x, unsigned long y, bool clockwise) {
  const unsigned long row = clockwise ? y : stack.numY - 1 - y;
  const unsigned long column = clockwise ? stack.numX - 1 - x : x;
  return column * stack.numY + row;
}

TYPED_TEST(Rot90Test, TurnsEachPage) {
  using T = TypeParam;
  for (const Stack& stack : stacks) {
    const unsigned long page = stack.numX * stack.numY;
    const HostArray<T> in = HostArray<T>::counting(page * stack.numPages);
    const GuardedArray<T> input(in, 1);
    for (const bool clockwise : {true, false}) {
      for (const unsigned long offset : {0UL, 3UL}) {
        HostArray<T> expected(in.size());
        for (unsigned long i = 0; i < in.size(); ++i) {
          const unsigned long inPage = i % page;
          expected[i - inPage + turnedIndex(stack, inPage % stack.numX, inPage / stack.numX, clockwise)] = in[i];
        }
        GuardedArray<T> output(in.size(), offset);
        typename gpuruntime::Rot90::Invoker<T>()(nullptr, output.data(), input.data(), stack.numX, stack.numY,
                                                 stack.numPages, clockwise);
        expectElements(
            output.toHost(), [&](unsigned long i) { return expected[i]; },
            std::to_string(stack.numX) + " by " + std::to_string(stack.numY));
      }
    }
  }
}

TEST(Rot90, TurnsTheSmallestMatrixAsWritten) {
  HostArray<int> in(4);
  // [1 2; 3 4], column by column.
  const int elements[] = {1, 3, 2, 4};
  std::copy(std::begin(elements), std::end(elements), in.data());
  const GuardedArray<int> input(in);
  GuardedArray<int> output(4);
  gpuruntime::Rot90::Invoker<int>()(nullptr, output.data(), input.data(), 2, 2, 1, true);
  const int clockwise[] = {3, 4, 1, 2};
  expectElements(output.toHost(), [&](unsigned long i) { return clockwise[i]; });
  gpuruntime::Rot90::Invoker<int>()(nullptr, output.data(), input.data(), 2, 2, 1, false);
  const int counterClockwise[] = {2, 1, 4, 3};
  expectElements(output.toHost(), [&](unsigned long i) { return counterClockwise[i]; });
}

TEST(Rot90, LeavesAllAloneWithoutElementsOrPages) {
  const GuardedArray<int> input(4);
  GuardedArray<int> output(4);
  const gpuruntime::Rot90::Invoker<int> rotate;
  rotate(nullptr, output.data(), input.data(), 0, 4, 1, true);
  rotate(nullptr, output.data(), input.data(), 4, 0, 1, false);
  expectUntouched(output.toHost());
}

}  // namespace
