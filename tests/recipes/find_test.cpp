#include "support/recipes.hpp"

#include <set>

namespace {

using namespace testsupport;
using gpuruntime::FindFirstLast;
using gpuruntime::recipes::Distinct;
using gpuruntime::recipes::NonZeros;

template <class T>
class RecipeFind : public testing::Test {};
using FindTypes = testing::Types<double, signed char, bool, float2>;
TYPED_TEST_SUITE(RecipeFind, FindTypes);

TYPED_TEST(RecipeFind, listsFirstLastAndAll) {
  using T = TypeParam;
  const std::vector<Extents> shapes{{1, 1}, {7, 3}, {16384, 1}, {123, 457}, {50, 40, 30}, {0, 4}};
  for (const Extents& extents : shapes) {
    const unsigned long n = gpuruntime::recipes::detail::product(extents);
    const auto input = wholeNumbers<T>(n, 3, 0, 2);
    GuardedArray<T> x(input);
    std::vector<unsigned long> at;
    const T zero{};
    for (unsigned long i = 0; i < n; ++i) {
      if (!sameBits(input[i], zero)) at.push_back(i);
    }
    expectMemory(NonZeros<T>::workspace(n), [&](auto& memory) {
      const NonZeros<T> found(nullptr, View<const T>(x.data(), extents), memory);
      ASSERT_EQ(found.count(), at.size());
      for (const unsigned long k : {0UL, 1UL, at.size() / 2, at.size(), at.size() + 3}) {
        for (const FindFirstLast which : {FindFirstLast::first, FindFirstLast::last}) {
          const unsigned long listed = std::min<unsigned long>(k, at.size());
          const auto wanted = [&](unsigned long i) {
            return which == FindFirstLast::first ? at[i] : at[at.size() - listed + i];
          };
          GuardedArray<double> positions(k), rows(k), columns(k), rowsOnly(k), columnsOnly(k);
          GuardedArray<T> values(k);
          EXPECT_EQ(found.list(viewOf(positions, {k}), which), listed);
          EXPECT_EQ(found.list(viewOf(rowsOnly, {k}), viewOf(columnsOnly, {k}), which), listed);
          EXPECT_EQ(found.list(viewOf(rows, {k}), viewOf(columns, {k}), viewOf(values, {k}), which), listed);
          const auto p = positions.toHost(), r = rows.toHost(), c = columns.toHost(), ro = rowsOnly.toHost(),
                     co = columnsOnly.toHost();
          const auto v = values.toHost();
          for (unsigned long i = 0; i < k; ++i) {
            if (i >= listed) {
              EXPECT_TRUE(isUntouched(p, i) && isUntouched(r, i) && isUntouched(v, i));
              continue;
            }
            ASSERT_EQ(p[i], static_cast<double>(wanted(i) + 1));
            ASSERT_EQ(r[i], static_cast<double>(wanted(i) % extents[0] + 1));
            ASSERT_EQ(c[i], static_cast<double>(wanted(i) / extents[0] + 1));
            ASSERT_TRUE(ro[i] == r[i] && co[i] == c[i] && sameBits(v[i], input[wanted(i)]));
          }
        }
      }
    });
  }
}

TEST(RecipeFind, refusesListsOfDifferentLengths) {
  GuardedArray<double> x(wholeNumbers<double>(6, 1, 1, 3)), two(2), three(3);
  const NonZeros<double> found(nullptr, viewOf(x, {6}));
  expectRefused<std::invalid_argument>(
      "columns: expected 2 elements, came 3", [&] { found.list(viewOf(two, {2}), viewOf(three, {3})); }, two, three);
  expectRefused<std::invalid_argument>(
      "values: expected 2 elements, came 3",
      [&] { found.list(viewOf(two, {2}), viewOf(two, {2}), viewOf(three, {3})); }, two, three);
  expectRefused<std::length_error>("at most 2^32 elements",
                                   [&] { NonZeros<double>(nullptr, View<const double>(x.data(), (1UL << 32) + 1)); });
}

TEST(RecipeDistinct, listsTheGroupsOfASortedVector) {
  for (const unsigned long n : {0UL, 1UL, 2UL, 1000UL, 40000UL}) {
    auto input = wholeNumbers<int>(n, 5, -50, 50);
    std::sort(input.data(), input.data() + n);
    GuardedArray<int> x(input);
    const std::set<int> values(input.data(), input.data() + n);
    expectMemory(Distinct<int>::workspace(n), [&](auto& memory) {
      const Distinct<int> distinct(nullptr, View<const int>(x.data(), n), false, memory);
      const unsigned long k = distinct.count();
      ASSERT_EQ(k, values.size());
      GuardedArray<int> listed(k);
      GuardedArray<double> starts(k), groups(n);
      distinct.list(viewOf(listed, {k}), viewOf(starts, {k}));
      distinct.groups(viewOf(groups, {n}));
      const auto v = listed.toHost();
      const auto s = starts.toHost(), g = groups.toHost();
      EXPECT_TRUE(std::equal(values.begin(), values.end(), v.data()));
      for (unsigned long i = 0; i < k; ++i) {
        EXPECT_EQ(s[i], static_cast<double>(std::lower_bound(input.data(), input.data() + n, v[i]) - input.data() + 1));
      }
      for (unsigned long i = 0; i < n; ++i) ASSERT_EQ(v[static_cast<unsigned long>(g[i]) - 1], input[i]);
    });
  }
}

TEST(RecipeDistinct, takesNaNsAsOneGroupOrMany) {
  HostArray<double> input(5);
  const double values[] = {-0.0, 0.0, 1, std::nan(""), std::nan("1")};
  std::copy_n(values, 5, input.data());
  GuardedArray<double> x(input);
  const View<const double> sorted(x.data(), 5);
  EXPECT_EQ(Distinct<double>(nullptr, sorted).count(), 4u);
  EXPECT_EQ(Distinct<double>(nullptr, sorted, true).count(), 3u);
  GuardedArray<double> three(3), four(4);
  const Distinct<double> distinct(nullptr, sorted);
  expectRefused<std::invalid_argument>(
      "values: expected 4 elements, came 3", [&] { distinct.list(viewOf(three, {3}), viewOf(four, {4})); }, three,
      four);
  expectRefused<std::invalid_argument>(
      "groups: expected 5", [&] { distinct.groups(viewOf(four, {4})); }, four);
  expectRefused<std::invalid_argument>("sorted: expected a vector", [&] {
    Distinct<double>(nullptr, View<const double>(x.data(), {2, 2}));
  });
}

}  // namespace
