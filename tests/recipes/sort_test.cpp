#include "support/recipes.hpp"

#include <numeric>

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;

struct Case {
  Extents extents;
  std::size_t dimension;
};

// Short lines, which go by column numbers, and lines that are sorted alone; all three places of the dimension.
const std::vector<Case> cases{{{1}, 0},           {{1000}, 0},     {{70, 30}, 0},   {{70, 30}, 1},
                              {{5, 60, 7}, 1},    {{5, 60, 7}, 2}, {{70000, 2}, 0}, {{2, 70000}, 1},
                              {{3, 66000, 2}, 1}, {{1, 500}, 1},   {{0, 5}, 0},     {{4, 0, 3}, 0}};

TEST(RecipeSort, sortsLinesAlongAnyDimensionWithTheirPlaces) {
  for (const Case& shape : cases) {
    SCOPED_TRACE(recipes::detail::inWords(shape.extents) + " along " + std::to_string(shape.dimension));
    const unsigned long n = recipes::detail::product(shape.extents), L = shape.extents[shape.dimension];
    unsigned long S = 1;
    for (std::size_t i = 0; i < shape.dimension; ++i) S *= shape.extents[i];
    const auto input = wholeNumbers<double>(n, 9, -40, 40);
    for (const bool ascending : {true, false}) {
      GuardedArray<double> data(input), index(n), alone(input);
      expectMemory(
          recipes::sortWorkspace<double>(shape.extents, shape.dimension, true),
          [&](auto& memory) {
            recipes::sort<double>(nullptr, viewOf(data, shape.extents), viewOf(index, {n}), shape.dimension, ascending,
                                  memory);
          },
          data, index);
      expectMemory(
          recipes::sortWorkspace<double>(shape.extents, shape.dimension, false),
          [&](auto& memory) {
            recipes::sort<double>(nullptr, viewOf(alone, shape.extents), shape.dimension, ascending, memory);
          },
          alone);
      const auto sorted = data.toHost(), places = index.toHost(), sortedAlone = alone.toHost();
      for (unsigned long line = 0; line * L < n; ++line) {
        const unsigned long first = line % S + line / S * S * L;
        std::vector<unsigned long> order(L);
        std::iota(order.begin(), order.end(), 0UL);
        std::stable_sort(order.begin(), order.end(), [&](unsigned long a, unsigned long b) {
          const double x = input[first + a * S], y = input[first + b * S];
          return ascending ? x < y : x > y;
        });
        for (unsigned long i = 0; i < L; ++i) {
          ASSERT_EQ(places[first + i * S], static_cast<double>(order[i] + 1)) << "line " << line << ", " << i;
          ASSERT_EQ(sorted[first + i * S], input[first + order[i] * S]);
          ASSERT_EQ(sortedAlone[first + i * S], input[first + order[i] * S]);
        }
      }
    }
  }
}

TEST(RecipeSort, takesIntegersAndComplexElements) {
  const auto input = wholeNumbers<long long>(600, 4);
  GuardedArray<long long> data(input);
  recipes::sort<long long>(nullptr, viewOf(data, {20, 30}), 1, false);
  const auto sorted = data.toHost();
  for (unsigned long i = 20; i < 600; ++i) ASSERT_GE(sorted[i - 20], sorted[i]);
  GuardedArray<double2> numbers(wholeNumbers<double2>(300, 4));
  recipes::sort<double2>(nullptr, viewOf(numbers, {300}), 0);
  const auto byMagnitude = numbers.toHost();
  for (unsigned long i = 1; i < 300; ++i) {
    const auto magnitude = [&](unsigned long at) { return std::hypot(byMagnitude[at].x, byMagnitude[at].y); };
    ASSERT_LE(magnitude(i - 1), magnitude(i));
  }
}

TEST(RecipeSort, refusesWhatDoesNotFit) {
  GuardedArray<double> data(wholeNumbers<double>(6, 1)), index(5);
  expectRefused<std::invalid_argument>(
      "sort: index: expected 6 elements, came 5",
      [&] { recipes::sort<double>(nullptr, viewOf(data, {6}), viewOf(index, {5}), 0); }, data, index);
  expectRefused<std::invalid_argument>(
      "dimension: expected one of 1, counted from 0, came 1",
      [&] { recipes::sort<double>(nullptr, viewOf(data, {6}), 1); }, data);
}

template <class T>
class RecipeMember : public testing::Test {};
using MemberElements = testing::Types<double, float, int, unsigned char>;
TYPED_TEST_SUITE(RecipeMember, MemberElements);

TYPED_TEST(RecipeMember, saysWhereTheFirstOfEqualsIs) {
  using T = TypeParam;
  for (const unsigned long nB : {0UL, 1UL, 10UL, 3000UL}) {
    for (const unsigned long nA : {0UL, 1UL, 5000UL}) {
      const auto wanted = wholeNumbers<T>(nA, 3, 0, 200);
      const auto among = wholeNumbers<double>(nB, 8, 0, 150);
      GuardedArray<T> A(wanted);
      GuardedArray<double> B(among), location(nA);
      GuardedArray<bool> member(nA);
      expectMemory(
          recipes::isMemberWorkspace(nB),
          [&](auto& memory) {
            recipes::isMember<T>(nullptr, viewOf(member, {nA}), viewOf(location, {nA}), View<const T>(A.data(), nA),
                                 View<const double>(B.data(), nB), memory);
          },
          member, location);
      const auto first = [&](unsigned long i) {
        const double* const end = among.data() + nB;
        const double* const at = std::find(among.data(), end, static_cast<double>(wanted[i]));
        return at == end ? 0.0 : static_cast<double>(at - among.data() + 1);
      };
      expectElements(location.toHost(), first);
      expectElements(member.toHost(), [&](unsigned long i) { return first(i) != 0; });
      expectElements(
          B.toHost(), [&](unsigned long i) { return among[i]; }, "B stays");
    }
  }
}

TEST(RecipeMember, takesComplexElementsAndRefusesWhatDoesNotFit) {
  const auto wanted = wholeNumbers<double2>(50, 3, 0, 9), among = wholeNumbers<double2>(40, 4, 0, 9);
  GuardedArray<double2> A(wanted), B(among);
  GuardedArray<double> location(50), few(49), doubles(wholeNumbers<double>(50, 1));
  GuardedArray<bool> member(50);
  recipes::isMember(nullptr, viewOf(member, {50}), viewOf(location, {50}), viewOf(A, {50}), viewOf(B, {40}));
  expectElements(location.toHost(), [&](unsigned long i) {
    for (unsigned long j = 0; j < 40; ++j) {
      if (among[j].x == wanted[i].x && among[j].y == wanted[i].y) return static_cast<double>(j + 1);
    }
    return 0.0;
  });
  const View<const double> all(doubles.data(), 50);
  expectRefused<std::invalid_argument>(
      "isMember: location: expected 50 elements, came 49",
      [&] { recipes::isMember<double>(nullptr, viewOf(member, {50}), viewOf(few, {49}), all, all); }, member, few);
}

}  // namespace
