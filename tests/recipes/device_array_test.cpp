#include <gpuruntime/build/colon.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

// A sanitizer that ends the program at an impossible allocation would hide what the caller gets to see.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}

namespace {

using gpuruntime::recipes::DeviceArray;
using gpuruntime::recipes::Stream;

template <class T>
class DeviceArrayOf : public testing::Test {};
using Elements = testing::Types<bool, signed char, unsigned short, float, double, unsigned long long>;
TYPED_TEST_SUITE(DeviceArrayOf, Elements);

TYPED_TEST(DeviceArrayOf, bringsBackWhatItWasGiven) {
  std::vector<TypeParam> host;
  for (int i = 0; i < 105; ++i) host.push_back(static_cast<TypeParam>(i % 7 == 3 ? 0 : i + 1));

  DeviceArray<TypeParam> cube(host, 5, 7, 3);
  EXPECT_EQ(cube.toHost(), host);
  EXPECT_EQ(cube.size(), 105u);
  EXPECT_EQ(cube.bytes(), 105 * sizeof(TypeParam));
  EXPECT_EQ(cube.dimensions(), 3u);
  EXPECT_EQ(cube.extent(0), 5u);
  EXPECT_EQ(cube.extent(1), 7u);
  EXPECT_EQ(cube.extent(2), 3u);
  EXPECT_EQ(cube.extent(3), 1u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(cube.data()) % 64, 0u);

  const std::unique_ptr<TypeParam[]> part(new TypeParam[6]);
  std::copy(host.begin() + 10, host.begin() + 16, part.get());
  DeviceArray<TypeParam> matrix(part.get(), 2, 3);
  EXPECT_EQ(matrix.toHost(), std::vector<TypeParam>(host.begin() + 10, host.begin() + 16));

  Stream stream;
  DeviceArray<TypeParam> copy(105);
  copy.copyFrom(cube, stream);
  const std::vector<TypeParam> ones(105, TypeParam(1));
  cube.copyFrom(ones, nullptr);
  EXPECT_EQ(copy.toHost(stream), host);
  EXPECT_EQ(cube.toHost(), ones);
}

TEST(DeviceArray, withoutElements) {
  const DeviceArray<double> none;
  EXPECT_EQ(none.size(), 0u);
  EXPECT_EQ(none.dimensions(), 0u);
  EXPECT_TRUE(none.toHost().empty());

  // One extent of 0 wins over a product that can't be expressed.
  const unsigned long large = 1UL << 40;
  DeviceArray<double> flat(large, large, 0);
  EXPECT_EQ(flat.size(), 0u);
  EXPECT_EQ(flat.extent(1), large);
  EXPECT_EQ(flat.data(), nullptr);
  EXPECT_TRUE(flat.toHost().empty());
  flat.copyFrom(std::vector<double>());
}

TEST(DeviceArray, failsWhenTheMemoryIsNotThere) {
  const unsigned long most = std::numeric_limits<unsigned long>::max();
  EXPECT_THROW(DeviceArray<double>(most / 8 + 2), std::bad_alloc);  // 8 bytes, were it not checked
  EXPECT_THROW(DeviceArray<char>(1UL << 33, 1UL << 31, 2), std::bad_alloc);
  EXPECT_THROW(DeviceArray<char>{most}, std::bad_alloc);       // fits, but not rounded up to a page
  EXPECT_THROW(DeviceArray<char>(1UL << 52), std::bad_alloc);  // beyond any machine
  EXPECT_THROW(DeviceArray<double>(-1), std::bad_alloc);
  gpuruntime::recipes::synchronise();  // the failure is told once
  EXPECT_EQ(DeviceArray<double>(std::vector<double>{1, 2}).toHost().at(1), 2);
}

TEST(DeviceArray, refusesAnotherNumberOfElements) {
  const std::vector<int> six{1, 2, 3, 4, 5, 6};
  EXPECT_THROW(DeviceArray<int>(six, 2, 4), std::invalid_argument);
  DeviceArray<int> array(six, 2, 3);
  EXPECT_THROW(array.copyFrom({9, 9, 9, 9, 9, 9, 9}), std::invalid_argument);
  EXPECT_THROW(array.copyFrom({9}), std::invalid_argument);
  EXPECT_THROW(array.copyFrom(DeviceArray<int>(5)), std::invalid_argument);
  int few[5];
  EXPECT_THROW(array.copyTo(few, 5), std::invalid_argument);
  EXPECT_EQ(array.toHost(), six);
}

TEST(DeviceArray, movesItsMemory) {
  const std::vector<int> six{1, 2, 3, 4, 5, 6};
  DeviceArray<int> first(six, 2, 3);
  const int* memory = first.data();
  DeviceArray<int> second(std::move(first));
  EXPECT_EQ(second.data(), memory);
  EXPECT_EQ(first.data(), nullptr);
  EXPECT_EQ(first.size(), 0u);
  DeviceArray<int> third(17);
  third = std::move(second);
  EXPECT_EQ(third.toHost(), six);
  EXPECT_EQ(second.size(), 0u);
  static_assert(!std::is_copy_constructible<DeviceArray<int>>::value && !std::is_copy_assignable<Stream>::value, "");
}

// Long enough to be copied in parts, with an end that no part's size divides, at odd addresses.
TEST(Memory, copiesOnTheDeviceAndNothingBeside) {
  const std::size_t count = (5 << 20) + 13;
  std::vector<unsigned char> pattern(count);
  unsigned int state = 1;
  for (unsigned char& value : pattern) value = static_cast<unsigned char>((state = state * 1664525 + 1013904223) >> 24);
  const DeviceArray<unsigned char> source(pattern);
  const std::vector<unsigned char> untouched(count, 0xA5);
  DeviceArray<unsigned char> target(untouched);

  Stream stream;
  gpuruntime::recipes::copyOnDevice(target.data() + 3, source.data() + 1, count - 8, stream);
  std::vector<unsigned char> expected = untouched;
  std::memcpy(expected.data() + 3, pattern.data() + 1, count - 8);
  EXPECT_TRUE(target.toHost(stream) == expected);
}

TEST(Stream, ordersCallsOfTheLibrary) {
  Stream first;
  Stream stream(std::move(first));
  EXPECT_EQ(first.handle(), nullptr);
  DeviceArray<double> values(100000);
  gpuruntime::Colon::Invoker<double>()(stream, values.size(), values.data(), 1, 1, 100000);
  DeviceArray<double> copy(100000);
  copy.copyFrom(values, stream);
  stream.synchronise();
  std::vector<double> expected(100000);
  std::iota(expected.begin(), expected.end(), 1.0);
  EXPECT_EQ(copy.toHost(), expected);
}

}  // namespace
