#include "platform/platform.hpp"

#include <algorithm>
#include <numeric>

#include "support/visits.hpp"

namespace {

using namespace gpuruntime::platform;

/// The block has this shape, and its threads below `live` run once, each with its place.
template <class AnyBlock>
void expectRuns(const AnyBlock& block, Extent shape, Live live) {
  EXPECT_TRUE(block.index().x == 3 && block.index().y == 2 && block.index().z == 1 && block.grid().x == 9);
  EXPECT_TRUE(block.shape().x == shape.x && block.shape().y == shape.y && block.shape().z == shape.z);
  Visits visits(shape.x * shape.y * shape.z);
  unsigned char* const counts = visits.data();
  block.forEachThread(live, [=](Thread thread) {
    if (isIdle(thread.x >= live.x || thread.y >= live.y || thread.z >= live.z)) return;
    counts[thread.lane] += thread.lane == (thread.z * shape.y + thread.y) * shape.x + thread.x ? 1 : 100;
  });
  for (unsigned long lane = 0; lane < shape.x * shape.y * shape.z; ++lane) {
    const unsigned long x = lane % shape.x, y = lane / shape.x % shape.y, z = lane / shape.x / shape.y;
    if (x >= live.x || y >= live.y || z >= live.z) ++counts[lane];
  }
  EXPECT_TRUE(visits.each(1)) << "live " << live.x << " " << live.y << " " << live.z;
}

TEST(Block, runsLiveThreadsOnceWhateverItsShape) {
  constexpr unsigned long all = ~0UL;
  for (const Live& live : {Live{}, Live{0, all, all}, Live{all, 0, all}, Live{5, all, all}, Live{7, 5, 3},
                           Live{8, 6, 4}, Live{6, 5, 3}, Live{7, 4, 1}, Live{1, 1, 1}, Live{3, 4, 2}}) {
    const Block<> block({3, 2, 1}, {9, 8, 7}, {7, 5, 3});
    expectRuns(block, {7, 5, 3}, live);
    expectRuns(block.withShape<7, 5>(), {7, 5, 1}, live);
    expectRuns(block.withShape<32>(), {32, 1, 1}, live);
    expectRuns(block.withShape<0>(), {7, 5, 3}, live);  // Left to the launch.
  }
}

TEST(Block, keepsStatePerThreadAcrossSteps) {
  const Block<> block({}, {}, {8, 4, 2});
  PerThread<unsigned long, 64> first, second;
  const auto placeOf = [](Thread thread) { return 100 * thread.z + 10 * thread.y + thread.x; };
  block.forEachThread([&](Thread thread) { first[thread] = placeOf(thread); });
  block.forEachThread([&](Thread thread) { second[thread] = first[thread] + 1; });
  Visits visits(64);
  unsigned char* const counts = visits.data();
  block.forEachThread([&](Thread thread) {
    if (first[thread] == placeOf(thread) && second[thread] == placeOf(thread) + 1) ++counts[thread.lane];
  });
  EXPECT_TRUE(visits.each(1));
}

TEST(Checking, runsThreadsAndBlocksInAnotherOrder) {
  for (const auto orderOf : {checking::threadOrder, checking::blockOrder}) {
    for (const unsigned int count : {300U, 256U, 1000U}) {
      std::vector<unsigned int> inOrder(count), order(orderOf(count), orderOf(count) + count);
      std::iota(inOrder.begin(), inOrder.end(), 0U);
      EXPECT_NE(order, inOrder);
      std::sort(order.begin(), order.end());
      EXPECT_EQ(order, inOrder);
    }
  }
}

}  // namespace
