#include "platform/platform.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "gtest/gtest.h"

namespace {

using namespace gpuruntime::platform;

/// Different for neighbours, all bytes in use.
template <class T>
T valueAt(unsigned long index) {
  const std::uint64_t bits[] = {(index + 1) * 0x9E3779B97F4A7C15U, ~index * 0xD1B54A32D192ED03U};
  T value;
  std::memcpy(&value, reinterpret_cast<const char*>(bits) + (sizeof(T) == 16 ? 0 : 8 - sizeof(T)), sizeof value);
  return value;
}

template <class T>
class Tile : public testing::Test {};
using Elements =
    testing::Types<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t, std::array<std::uint64_t, 2>>;
TYPED_TEST_SUITE(Tile, Elements);

template <class T, unsigned int N, unsigned int PITCH>
void expectTransposes() {
  T tile[N][PITCH];
  for (unsigned int i = 0; i < N * PITCH; ++i) tile[i / PITCH][i % PITCH] = valueAt<T>(i);
  const TransposedTile columns(tile);
  for (unsigned int i = 0; i < N * N; ++i) ASSERT_TRUE(columns(i / N, i % N) == tile[i % N][i / N]) << i << " of " << N;
}

TYPED_TEST(Tile, isReadByColumns) {
  expectTransposes<TypeParam, 16, 17>();
  expectTransposes<TypeParam, 8, 8>();
  expectTransposes<TypeParam, 2, 3>();
  if constexpr (sizeof(TypeParam) >= 4) expectTransposes<TypeParam, 32, 33>();
}

TYPED_TEST(Tile, isWrittenWholeOrInPart) {
  constexpr long side = 16, rows = 40, guard = 512;
  const Block<> block({}, {}, {16, 16, 1});
  // Column and row of the tile's corner, length of a row, elements behind a line boundary.
  const long cases[][4] = {{64, 3, 192, 0},  {0, 24, 64, 0},  {64, 3, 192, 1}, {5, 0, 85, 0},
                           {64, 30, 192, 0}, {-5, -3, 64, 0}, {48, -3, 64, 0}, {-16, 3, 64, 1}};
  for (const auto& [left, top, pitch, misalignment] : cases) {
    for (const unsigned long count : {1UL, 1UL << 30}) {  // A small array and, as far as the tile knows, a large one.
      std::vector<TypeParam> written(static_cast<unsigned long>(rows * pitch + 2 * guard));
      for (unsigned long i = 0; i < written.size(); ++i) written[i] = valueAt<TypeParam>(i);
      const unsigned long toBoundary = -reinterpret_cast<std::uintptr_t>(written.data()) % lineBytes;
      const long origin = guard / 2 + static_cast<long>(toBoundary / sizeof(TypeParam)) + misalignment;
      std::vector<TypeParam> expected = written;
      const bool isWhole = left >= 0 && top >= 0 && left + side <= pitch && top + side <= rows;
      OutputTile<TypeParam, 16> tile(written.data() + origin, top * pitch + left, static_cast<unsigned long>(pitch),
                                     isWhole, count);
      block.forEachThread([&, left = left, top = top, pitch = pitch](Thread thread) {
        const long column = left + static_cast<long>(thread.x), row = top + static_cast<long>(thread.y);
        if (column < 0 || column >= pitch || row < 0 || row >= rows) return;
        const auto value = valueAt<TypeParam>(thread.lane + 100000);
        tile.at(thread) = value;
        expected[static_cast<unsigned long>(origin + row * pitch + column)] = value;
      });
      tile.flush(block);
      EXPECT_TRUE(written == expected) << "corner " << left << ", " << top << " of " << count;
    }
  }
}

// Of an array that counts as large and of a small one, from a line boundary and behind it.
TYPED_TEST(Tile, isStoredTransposedInPart) {
  constexpr unsigned int side = 128;
  constexpr unsigned long pitch = 192, guard = 64;
  const Block<side, side> block({}, {}, {side, side, 1});
  alignas(lineBytes) static TypeParam tile[side][tilePitch<TypeParam, side>];
  for (unsigned int i = 0; i < side * side; ++i) tile[i / side][i % side] = valueAt<TypeParam>(i);
  for (const Live live : {Live{128, 128}, Live{1000, 17}, Live{3, 200}, Live{65, 1}, Live{31, 33}}) {
    for (const unsigned long misalignment : {0UL, 1UL}) {
      for (const unsigned long count : {1UL, 1UL << 30}) {
        std::vector<TypeParam> written(side * pitch + 2 * guard), expected = written;
        const unsigned long toBoundary = -reinterpret_cast<std::uintptr_t>(written.data()) % lineBytes;
        const unsigned long origin = toBoundary / sizeof(TypeParam) + misalignment;
        storeTransposed(block, tile, live, written.data() + origin, pitch, count);
        for (unsigned long y = 0; y < std::min<unsigned long>(live.y, side); ++y) {
          for (unsigned long x = 0; x < std::min<unsigned long>(live.x, side); ++x) {
            expected[origin + y * pitch + x] = tile[x][y];
          }
        }
        EXPECT_TRUE(written == expected) << live.x << " by " << live.y << " of " << count;
      }
    }
  }
}

}  // namespace
