// The planner, and what the device sees of a call.
#include "elmath/permutePlan.hpp"

#include <gpuruntime/elmath/permute.hpp>

#include "support/devicemodel.hpp"

namespace {

using gpuruntime::Sizes;

/// Everything that is planned for an array of these sizes, squeezed already.
struct Plan {
  Plan(const Sizes& output, const Sizes& order)
      : jump(gpuruntime::iIdentifyJumpDim(output, order)),
        block(gpuruntime::iDecideBlkParams(jump, output, order)),
        grid(gpuruntime::iSetupGridInfo(jump, output, order, block.tile(), block.steps())) {}

  /// Jump; block and steps, x and y of each; grid; counts.
  std::vector<Sizes> inNumbers() const {
    return {{jump}, {block.blockX, block.blockY, block.stepsX, block.stepsY}, grid.grid, {grid.countX, grid.countY}};
  }

  unsigned long jump;
  gpuruntime::BlockParams block;
  gpuruntime::GridInfo grid;
};

TEST(PermutePlan, isAsWorkedByHand) {
  const auto plan = [](const Sizes& output, const Sizes& order) { return Plan(output, order).inNumbers(); };
  using Numbers = std::vector<Sizes>;
  EXPECT_EQ(plan({200, 100}, {2, 1}), (Numbers{{0}, {16, 16, 13, 1}, {1, 7}, {208, 112}}));
  EXPECT_EQ(plan({100, 1000, 3}, {1, 3, 2}), (Numbers{{1}, {128, 1, 64, 1}, {1, 16, 3}, {393216, 1}}));
  EXPECT_EQ(plan({3, 5}, {2, 1}), (Numbers{{1}, {8, 8, 1, 1}, {1, 1}, {8, 8}}));
  EXPECT_EQ(plan({100000, 3}, {1, 2}), (Numbers{{0}, {256, 1, 64, 1}, {7, 3}, {7 * 16384 * 3, 1}}));
  EXPECT_EQ(plan({40, 3, 40}, {3, 2, 1}), (Numbers{{0}, {16, 16, 3, 1}, {1, 3, 3}, {48 * 3, 48}}));
  EXPECT_EQ(plan({20, 3, 5000, 2}, {2, 3, 1, 4}), (Numbers{{2}, {16, 16, 1, 128}, {2, 3, 3, 2}, {32 * 3, 6144 * 2}}));
  EXPECT_EQ(plan({9}, {1}), (Numbers{{0}, {32, 1, 64, 1}, {1}, {2048, 1}}));
  EXPECT_EQ(plan({15, 2}, {2, 1}), (Numbers{{0}, {16, 16, 1, 1}, {1, 1}, {16, 16}}));
  // Without elements.
  EXPECT_EQ(plan({0}, {1}), (Numbers{{0}, {32, 1, 64, 1}, {1}, {2048, 1}}));
  EXPECT_EQ(plan({0, 0}, {2, 1}), (Numbers{{0}, {8, 8, 1, 1}, {1, 1}, {8, 8}}));
  EXPECT_EQ(plan({300, 0}, {1, 2}), (Numbers{{0}, {256, 1, 64, 1}, {1, 0}, {0, 1}}));
}

TEST(PermutePlan, leavesOutSizesOfOne) {
  const auto squeezed = [](const Sizes& output, const Sizes& input, const Sizes& order) {
    const auto result = gpuruntime::iComputeSqueezedSzAndOrder(output, input, order);
    return std::vector<Sizes>{result.get<0>(), result.get<1>(), result.get<2>()};
  };
  using Vectors = std::vector<Sizes>;
  EXPECT_EQ(squeezed({3, 5}, {5, 3}, {2, 1}), (Vectors{{3, 5}, {5, 3}, {2, 1}}));
  EXPECT_EQ(squeezed({1, 4, 5}, {4, 5}, {3, 1, 2}), (Vectors{{4, 5}, {4, 5}, {1, 2}}));
  EXPECT_EQ(squeezed({5, 1, 0, 1, 4}, {1, 4, 1, 0, 5}, {5, 1, 4, 3, 2}), (Vectors{{5, 0, 4}, {4, 0, 5}, {3, 2, 1}}));
  EXPECT_EQ(squeezed({1, 1}, {1, 1}, {2, 1}), (Vectors{{}, {}, {}}));
}

class PermuteCalls : public DeviceModelTest {
 protected:
  // Swaps the first and the last dimension, and says whether the output is right.
  static testing::AssertionResult swapEnds(const Sizes& sizes) {
    Sizes order(sizes.size()), to = sizes;
    std::iota(order.begin(), order.end(), 1UL);
    std::swap(order.front(), order.back());
    std::swap(to.front(), to.back());
    const unsigned long count = std::accumulate(sizes.begin(), sizes.end(), 1UL, std::multiplies<>());
    const unsigned long first = sizes.front(), last = sizes.back(), middle = count == 0 ? 0 : count / first / last;
    std::vector<int> in(count), out(count, -1);
    std::iota(in.begin(), in.end(), 0);
    gpuruntime::Permute::Invoker<int>()(nullptr, out.data(), to.size(), to.data(), in.data(), sizes.size(),
                                        sizes.data(), order.size(), order.data());
    for (unsigned long i = 0; i < count; ++i) {
      const unsigned long x = i / (last * middle), y = i % last, rest = i / last % middle;
      if (out[i] != in[x + first * (rest + middle * y)]) return testing::AssertionFailure() << "element " << i;
    }
    return testing::AssertionSuccess();
  }
};

TEST_F(PermuteCalls, areFourCopiesAndOneLaunch) {
  model().startRecording();
  EXPECT_TRUE(swapEnds({100, 200}));
  EXPECT_EQ(model().countOf(Call::memcpyToSymbol), 4u);
  EXPECT_EQ(model().countOf(Call::launch), 1u);
  EXPECT_EQ(launched(), (Shape{1, 7, 1, 16, 16, 1}));

  const Sizes from{100, 3, 1000}, to{100, 1000, 3}, order{1, 3, 2};
  std::vector<short> in(300000), out(300000);
  gpuruntime::Permute::Invoker<short>()(nullptr, out.data(), 3, to.data(), in.data(), 3, from.data(), 3, order.data());
  EXPECT_EQ(launched(), (Shape{48, 1, 1, 128, 1, 1}));

  model().startRecording();
  for (const Sizes& empty : {Sizes{0}, Sizes{5, 0}, Sizes{0, 5, 3}, Sizes{300, 0, 2}}) EXPECT_TRUE(swapEnds(empty));
  EXPECT_EQ(model().countOf(Call::launch), 0u);
}

// Small grids: blocks in several steps, and more of them than the plan has, which do again what others did.
TEST_F(PermuteCalls, wrapAroundInLargerGrids) {
  for (const auto& [x, y] : {std::pair{2, 3}, {5, 2}, {1, 1}}) {
    useDevice(deviceWithGrid(x, y, 64));
    for (const Sizes& sizes : {Sizes{100, 200}, Sizes{200, 100}, Sizes{70, 3, 5, 40}, Sizes{17, 2, 3000}}) {
      EXPECT_TRUE(swapEnds(sizes)) << x << " by " << y;
    }
  }
  // 23 blocks in two rows of 12: one too many.
  useDevice(deviceWithGrid(15, 15, 64));
  model().startRecording();
  EXPECT_TRUE(swapEnds({23 * 64 * 256, 1}));
  EXPECT_EQ(launched(), (Shape{12, 2, 1, 256, 1, 1}));
}

TEST_F(PermuteCalls, thatCannotCopyThePlanLeaveTheOutput) {
  const std::vector<int> before(12, -1), in(12);
  const auto expectNothingDone = [&](const Sizes& to, const Sizes& from, const Sizes& order, unsigned int copies) {
    model().startRecording();
    std::vector<int> out = before;
    gpuruntime::Permute::Invoker<int>()(nullptr, out.data(), to.size(), to.data(), in.data(), from.size(), from.data(),
                                        order.size(), order.data());
    EXPECT_EQ(out, before);
    EXPECT_EQ(model().calls().size(), copies);  // And no launch.
  };
  for (unsigned int copy = 1; copy <= 4; ++copy) {
    model().reset();
    model().failCall(Call::memcpyToSymbol, copy, cudaErrorInvalidValue);
    expectNothingDone({3, 4}, {4, 3}, {2, 1}, copy);
  }
  model().reset();
  Sizes manySizes(65, 2), order(65);
  std::iota(order.rbegin(), order.rend(), 1UL);
  expectNothingDone(manySizes, manySizes, order, 1);
}

}  // namespace
