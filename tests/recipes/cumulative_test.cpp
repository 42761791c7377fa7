#include "support/recipes.hpp"
#include "support/scanreference.hpp"

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;

struct Case {
  Extents extents;
  std::size_t dimension;
};

// One line of a column by chunks, as stated; S tells segments (1) from columns.
template <class Rule, class T>
void scanLine(std::vector<T>& line, bool isSegment) {
  const unsigned long L = line.size(), chunks = (L + 16383) / 16384;
  std::vector<T> totals;
  for (unsigned long at = 0; at < L; at += 16384) {
    const unsigned long live = std::min(16384UL, L - at);
    T total{};
    if (isSegment) {
      scan<Rule>(&total, line.data() + at, Fold{live, live});
    } else {
      for (unsigned long i = at + 1; i < at + live; ++i) line[i] = Rule::apply(line[i - 1], line[i]);
      total = line[at + live - 1];
    }
    totals.push_back(total);
  }
  if (chunks <= 1) return;
  scanLine<Rule>(totals, isSegment);
  for (unsigned long i = 16384; i < L; ++i) {
    const T& inFront = totals[i / 16384 - 1];
    line[i] = isSegment ? Rule::apply(line[i], inFront) : Rule::apply(inFront, line[i]);
  }
}

template <class Rule, class T>
HostArray<T> scanned(const HostArray<T>& data, const Case& shape) {
  unsigned long S = 1;
  for (std::size_t i = 0; i < shape.dimension; ++i) S *= shape.extents[i];
  const unsigned long L = shape.extents[shape.dimension];
  HostArray<T> result = data;
  for (unsigned long column = 0; column < data.size() / std::max(L, 1UL); ++column) {
    const unsigned long first = column % S + column / S * S * L;
    std::vector<T> line;
    for (unsigned long r = 0; r < L; ++r) line.push_back(data[first + r * S]);
    scanLine<Rule>(line, S == 1);
    for (unsigned long r = 0; r < L; ++r) result[first + r * S] = line[r];
  }
  return result;
}

template <class T>
class RecipeScan : public testing::Test {};
using ScanTypes = testing::Types<double, float, signed char, unsigned long long, float2, short2>;
TYPED_TEST_SUITE(RecipeScan, ScanTypes);

// Whole chunks, a short last one, one chunk and a little, several lines and groups of each; rows.
TYPED_TEST(RecipeScan, addsAndMultipliesByChunksAlongAnyDimension) {
  using T = TypeParam;
  const std::vector<Case> cases{{{1}, 0},           {{16384}, 0},    {{16385}, 0},    {{300000}, 0},
                                {{32768, 3}, 0},    {{20001, 3}, 0}, {{3, 16384}, 1}, {{3, 49152, 2}, 1},
                                {{2, 20001, 2}, 1}, {{5, 16385}, 1}, {{4, 3, 5}, 2},  {{1, 40000}, 1},
                                {{2, 33000, 1}, 1}, {{5, 4, 3}, 0}};
  for (const Case& shape : cases) {
    SCOPED_TRACE(gpuruntime::recipes::detail::inWords(shape.extents));
    const unsigned long n = gpuruntime::recipes::detail::product(shape.extents);
    for (const bool isSum : {true, false}) {
      const HostArray<T> data = isSum ? scanData<SumRule, T>(n) : scanData<ProdRule, T>(n);
      GuardedArray<T> array(data);
      expectMemory(
          recipes::cumulativeWorkspace<T>(shape.extents, shape.dimension),
          [&](auto& memory) {
            (isSum ? recipes::cumulativeSum<T> : recipes::cumulativeProduct<T>)(nullptr, viewOf(array, shape.extents),
                                                                                shape.dimension, memory);
          },
          array);
      const HostArray<T> expected = isSum ? scanned<SumRule>(data, shape) : scanned<ProdRule>(data, shape);
      expectElements(
          array.toHost(), [&](unsigned long i) { return expected[i]; }, isSum ? "sum" : "product");
    }
  }
}

TEST(RecipeScan, goesThroughThreeLevels) {
  const unsigned long n = 16384UL * 16384 + 16384 + 3;
  GuardedArray<bool> data(n);
  gpuruntime::GenericOnes::Invoker<bool>()(nullptr, n, data.data(), false);
  const unsigned long first = 16384UL * 16384 - 16384 - 5;
  gpuruntime::GenericOnes::Invoker<bool>()(nullptr, 1, data.data() + first, true);
  recipes::cumulativeSum<bool>(nullptr, View<bool>(data.data(), n), 0);
  GuardedArray<double> count(1), position(1);
  GuardedArray<bool> greatest(1);
  recipes::sumAsDouble<bool>(nullptr, viewOf(count, {1}), View<const bool>(data.data(), n));
  recipes::maximum<bool>(nullptr, viewOf(greatest, {1}), viewOf(position, {1}), View<const bool>(data.data(), n));
  EXPECT_EQ(count.toHost()[0], static_cast<double>(n - first));
  EXPECT_EQ(position.toHost()[0], static_cast<double>(first + 1));
}

TEST(RecipeScan, leavesEmptyArraysAloneAndRefusesADimensionThatIsNotThere) {
  EmptyAllocator nothing;
  recipes::cumulativeSum<double>(nullptr, View<double>(nullptr, {7, 0, 5}), 1, nothing);
  recipes::cumulativeProduct<int>(nullptr, View<int>(nullptr, 0UL), 0, nothing);
  EXPECT_EQ(recipes::cumulativeWorkspace<double>({7, 0, 5}, 1), 0u);
  GuardedArray<double> array(wholeNumbers<double>(6, 1));
  expectRefused<std::invalid_argument>(
      "cumulativeSum: dimension: expected one of 2, counted from 0, came 2",
      [&] {
        recipes::cumulativeSum<double>(nullptr, viewOf(array, {2, 3}), 2);
      },
      array);
}

}  // namespace
