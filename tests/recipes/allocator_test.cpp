#include "support/recipes.hpp"

namespace {

using namespace testsupport;
using gpuruntime::recipes::DeviceArray;
using gpuruntime::recipes::Workspace;
using gpuruntime::recipes::WorkspaceTooSmall;

TEST(Workspace, handsOutStretchesThatDoNotOverlap) {
  GuardedArray<unsigned char> memory(1000, 3);  // Not aligned: the first 61 bytes are left out.
  Workspace workspace(memory.data(), 1000);
  auto* const a = static_cast<unsigned char*>(workspace.allocate(1));
  auto* const b = static_cast<unsigned char*>(workspace.allocate(100));
  EXPECT_EQ(a - memory.data(), 61);
  EXPECT_EQ(b - a, 64);
  EXPECT_EQ(workspace.used(), 192u);
  // A block in the middle stays taken until nothing is in use.
  auto* const c = static_cast<unsigned char*>(workspace.allocate(64));
  workspace.release(b, 100);
  EXPECT_EQ(workspace.allocate(64), c + 64);
  workspace.release(c + 64, 64);
  workspace.release(c, 64);
  EXPECT_EQ(workspace.used(), 192u);
  workspace.release(a, 1);
  EXPECT_EQ(workspace.used(), 0u);
  EXPECT_EQ(workspace.most(), 320u);
  // All that is left, and one more.
  void* const all = workspace.allocate(939);
  EXPECT_THROW(workspace.allocate(1), WorkspaceTooSmall);
  workspace.release(all, 939);
  try {
    workspace.allocate(940);
    ADD_FAILURE();
  } catch (const WorkspaceTooSmall& error) {
    EXPECT_STREQ(error.what(), "workspace too small: 940 bytes wanted, 939 left");
  }
  Workspace tiny(memory.data(), 10);
  EXPECT_THROW(tiny.allocate(1), WorkspaceTooSmall);
}

TEST(View, looksAtAnArrayWithItsExtents) {
  DeviceArray<int> array(3, 1, 2);
  const View<int> view = array;
  const View<const int> constant = view;
  EXPECT_EQ(constant.data(), array.data());
  EXPECT_EQ(constant.extents(), (Extents{3, 1, 2}));
  EXPECT_EQ(constant.extent(7), 1u);
  EXPECT_FALSE(view.isVector());
  EXPECT_TRUE(view.reshaped({1, 6}).isVector());
  EXPECT_TRUE(View<int>(nullptr, {0, 1}).isVector());
  EXPECT_EQ(View<int>(nullptr, {0, 1UL << 40, 1UL << 40}).size(), 0u);
  EXPECT_EQ(View<int>(nullptr, Extents{}).size(), 0u);
  EXPECT_THROW(View<int>(nullptr, 5UL), std::invalid_argument);
  EXPECT_THROW(view.reshaped({2, 2}), std::invalid_argument);
  EXPECT_THROW(View<int>(array.data(), {1UL << 40, 1UL << 40}), std::length_error);
  static_assert(!std::is_convertible_v<const DeviceArray<int>&, View<int>>, "a constant array gives constant views");
  static_assert(!std::is_convertible_v<DeviceArray<int>, View<const int>>, "no view of an array that is gone at once");
}

}  // namespace
