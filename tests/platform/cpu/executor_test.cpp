#include "platform/cpu/executor.hpp"

#include <algorithm>
#include <chrono>
#include <numeric>

#include "platform/platform.hpp"
#include "support/visits.hpp"

namespace {

using namespace gpuruntime::platform;

void keepBusy(std::chrono::microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) {
  }
}

TEST(Executor, runsEveryBlockOnce) {
  // Blocks that cost nothing, more than a task, and more than a task from some block on.
  const unsigned long countAndFirstSlow[][2] = {{1, 1}, {2, 2}, {3, 3},   {1000, 1000},    {100000, 100000}, {1, 0},
                                                {2, 0}, {3, 0}, {300, 0}, {100000, 99900}, {400, 5}};
  for (const auto& [count, firstSlow] : countAndFirstSlow) {
    Visits visits(count);
    executeBlocks(count, [&, slow = firstSlow](BlockRange blocks) {
      for (unsigned long block = blocks.first; block < blocks.last; ++block) {
        if (block >= slow) keepBusy(std::chrono::microseconds(60));
        ++visits.data()[block];
      }
    });
    EXPECT_TRUE(visits.each(1)) << count << " blocks, slow from " << firstSlow;
  }
}

template <unsigned int SIDE>
struct NoteBlocks {
  static constexpr unsigned int walkSide = SIDE;

  static void run(const Block<>& block, std::vector<unsigned int>* walk) {
    const Extent index = block.index(), grid = block.grid();
    walk->push_back((index.z * grid.y + index.y) * grid.x + index.x);
  }
};

/// The walk over a grid, in two runs of blocks.
template <unsigned int SIDE>
std::vector<unsigned int> walkOver(Extent grid, unsigned long parting) {
  std::vector<unsigned int> walk;
  const auto kernel = kernelOf<NoteBlocks<SIDE>, std::vector<unsigned int>*>();
  kernel.runBlocks(grid, {}, {0, parting}, &walk);
  kernel.runBlocks(grid, {}, {parting, static_cast<unsigned long>(grid.x) * grid.y * grid.z}, &walk);
  return walk;
}

TEST(BlockWalk, coversTheGridOnceInSquares) {
  for (const Extent& grid : {Extent{1, 1, 1}, Extent{5, 3, 2}, Extent{7, 9, 1}, Extent{4, 8, 3}, Extent{1, 9, 2},
                             Extent{9, 1, 2}, Extent{3, 3, 3}}) {
    std::vector<unsigned int> all(grid.x * grid.y * grid.z);
    std::iota(all.begin(), all.end(), 0U);
    for (unsigned long parting = 0; parting <= all.size(); ++parting) {
      EXPECT_EQ(walkOver<1>(grid, parting), all);
      for (std::vector<unsigned int> walk : {walkOver<2>(grid, parting), walkOver<4>(grid, parting)}) {
        std::sort(walk.begin(), walk.end());
        EXPECT_EQ(walk, all) << "parted at " << parting;
      }
    }
  }
  const std::vector<unsigned int> squares{0, 1, 5, 6, 2, 3, 7, 8, 4, 9, 10, 11, 12, 13, 14};
  EXPECT_EQ(walkOver<2>({5, 3, 1}, 7), squares);
}

}  // namespace
