#include <numeric>

#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using Sizes = std::vector<unsigned long>;

unsigned long productOf(const Sizes& sizes) {
  return std::accumulate(sizes.begin(), sizes.end(), 1UL, std::multiplies<>());
}

std::string inWords(const Sizes& sizes) {
  std::string text;
  for (const unsigned long size : sizes) text += (text.empty() ? "" : " ") + std::to_string(size);
  return "(" + text + ")";
}

Sizes permutedSizes(const Sizes& sizes, const Sizes& order) {
  Sizes permuted;
  for (const unsigned long dim : order) permuted.push_back(dim <= sizes.size() ? sizes[dim - 1] : 1);
  return permuted;
}

// Calls visit(output position, input position) for every element, in the order of the output.
template <class Visit>
void forEachElement(const Sizes& sizes, const Sizes& order, Visit visit) {
  const Sizes to = permutedSizes(sizes, order);
  Sizes strides, coordinates(to.size());
  for (const unsigned long dim : order) {
    strides.push_back(dim <= sizes.size() ? productOf({sizes.begin(), sizes.begin() + static_cast<long>(dim - 1)}) : 0);
  }
  const unsigned long count = productOf(to);
  for (unsigned long position = 0; position < count; ++position) {
    visit(position, std::inner_product(coordinates.begin(), coordinates.end(), strides.begin(), 0UL));
    for (std::size_t k = 0; k < to.size() && ++coordinates[k] == to[k]; ++k) coordinates[k] = 0;
  }
}

template <class T>
void permute(T* output, const T* input, const Sizes& sizes, const Sizes& order) {
  const Sizes to = permutedSizes(sizes, order);
  typename gpuruntime::Permute::Invoker<T>()(nullptr, output, to.size(), to.data(), input, sizes.size(), sizes.data(),
                                             order.size(), order.data());
}

/// Holds Permute against the index arithmetic of its definition.
template <class T>
class Permuter {
 public:
  explicit Permuter(unsigned long largestCount)
      : host_(HostArray<T>::counting(largestCount)), input_(host_, 1), expected_(largestCount) {}

  void check(const Sizes& sizes, const Sizes& order, unsigned long offset = 0) {
    forEachElement(sizes, order, [&](unsigned long to, unsigned long from) { expected_[to] = host_[from]; });
    GuardedArray<T> output(productOf(sizes), offset);
    permute(output.data(), input_.data(), sizes, order);
    const HostArray<T> actual = output.toHost();
    if (actual.size() == 0 || std::memcmp(actual.data(), expected_.data(), actual.size() * sizeof(T)) == 0) return;
    expectElements(
        actual, [&](unsigned long i) { return expected_[i]; }, inWords(sizes) + " by " + inWords(order));
  }

  void checkAllOrders(const Sizes& sizes) {
    Sizes order(sizes.size());
    std::iota(order.begin(), order.end(), 1UL);
    do {
      check(sizes, order);
    } while (std::next_permutation(order.begin(), order.end()));
  }

 private:
  HostArray<T> host_;
  GuardedArray<T> input_;
  HostArray<T> expected_;
};

template <class T>
struct PermuteTest : ::testing::Test {};
TYPED_TEST_SUITE(PermuteTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(PermuteTest, MovesElementsOfEveryType) {
  Permuter<TypeParam> permuter(20 * 33 * 17);
  permuter.checkAllOrders({20, 33, 17});
  permuter.checkAllOrders({3, 1, 5, 300});
}

// One of each width.
using Widths = ::testing::Types<unsigned char, short, float, double, double2>;
template <class T>
struct PermuteWidthTest : ::testing::Test {};
TYPED_TEST_SUITE(PermuteWidthTest, Widths);

TYPED_TEST(PermuteWidthTest, MovesSmallArraysInAllOrders) {
  Permuter<TypeParam> permuter(17 * 17 * 17);
  const unsigned long extents[] = {0, 1, 2, 3, 17};
  const unsigned long highestRank = sizeof(TypeParam) == 4 ? 4 : 3;  // The plan does not depend on the width.
  for (unsigned long rank = 1; rank <= highestRank; ++rank) {
    for (unsigned long shape = 0; shape < static_cast<unsigned long>(std::pow(5, rank)); ++shape) {
      Sizes sizes;
      for (unsigned long rest = shape; sizes.size() < rank; rest /= 5) sizes.push_back(extents[rest % 5]);
      if (productOf(sizes) <= 17 * 17 * 17) permuter.checkAllOrders(sizes);
    }
  }
  for (const Sizes& sizes :
       {Sizes{17, 3, 2, 1, 3}, Sizes{2, 3, 2, 3, 2}, Sizes{3, 17, 1, 17, 2}, Sizes{1, 1, 1, 1, 1}}) {
    permuter.checkAllOrders(sizes);
  }
}

// Around the edges of tiles and blocks, and past the walk of a block: 64 runs, 128 tiles of 16.
TYPED_TEST(PermuteWidthTest, MovesArraysAroundTheBlocks) {
  Permuter<TypeParam> permuter(300000);
  for (const unsigned long x : {7UL, 8UL, 9UL, 15UL, 16UL, 31UL, 33UL, 255UL, 257UL}) {
    for (const unsigned long y : {8UL, 9UL, 16UL, 17UL, 32UL, 129UL, 256UL}) permuter.check({x, y}, {2, 1}, x % 3);
    permuter.check({x, 65, 3}, {1, 3, 2}, x % 5);
    permuter.check({x, 3, 130}, {1, 3, 2});
  }
  for (const Sizes& sizes : {Sizes{3, 2, 2060}, Sizes{2060, 2, 3}, Sizes{20, 3, 4100}, Sizes{4100, 3, 20}}) {
    permuter.checkAllOrders(sizes);
  }
  permuter.check({65 * 256 + 3, 2, 2}, {1, 3, 2});
}

// Large enough to be written past the caches: rows in whole lines, rows that begin anywhere, and ragged ends.
TYPED_TEST(PermuteWidthTest, MovesLargeArrays) {
  const unsigned long width = sizeof(TypeParam), longest = width < 4 ? 1024 : 512;
  Permuter<TypeParam> permuter((4UL << 20) / width + 600000);
  const unsigned long pages = (4UL << 20) / width / longest / 8 + 1;
  permuter.check({longest, 8, pages}, {2, 3, 1});
  permuter.check({8, pages, longest}, {2, 3, 1}, 1);
  permuter.check({8, longest, pages}, {3, 2, 1});
  permuter.check({longest + 1, 8, pages}, {3, 2, 1}, 1);
  permuter.check({longest, 8, pages}, {1, 3, 2});
  permuter.check({longest + 1, 8, pages}, {1, 3, 2}, 1);
}

TEST(Permute, CountsSizesPastTheStoredOnesAsOne) {
  Permuter<int> permuter(60);
  permuter.check({4, 5}, {3, 1, 2});
  permuter.check({4, 5}, {2, 3, 1});
  permuter.check({4, 1, 5}, {5, 3, 2, 4, 1});
  permuter.check({60}, {2, 1});
  permuter.check({1}, {2, 1});
}

TEST(Permute, TurnsTheSmallestStackAsWritten) {
  // Pages [1 3 5; 2 4 6] and [7 9 11; 8 10 12], to pages [1 2; 7 8], [3 4; 9 10] and [5 6; 11 12].
  const int expected[] = {1, 7, 2, 8, 3, 9, 4, 10, 5, 11, 6, 12};
  HostArray<int> in(12);
  std::iota(in.data(), in.data() + 12, 1);
  const GuardedArray<int> input(in);
  GuardedArray<int> output(12);
  permute(output.data(), input.data(), {2, 3, 2}, {3, 1, 2});
  expectElements(output.toHost(), [&](unsigned long i) { return expected[i]; });
}

}  // namespace
