#include "support/recipes.hpp"

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;
using gpuruntime::recipes::Subscript;

HostArray<double> hostOf(const std::vector<double>& values) {
  HostArray<double> host(values.size());
  std::copy(values.begin(), values.end(), host.data());
  return host;
}

// A subscript with the indices that it stands for.
struct Choice {
  Subscript subscript;
  std::vector<double> indices;
};

struct Lists {
  GuardedArray<double> some{hostOf({3, 1, 1, 2})}, none{0};

  std::vector<Choice> of(unsigned long extent) {
    std::vector<double> every;
    for (unsigned long i = 1; i <= extent; ++i) every.push_back(static_cast<double>(i));
    return {{viewOf(some, {4}), {3, 1, 1, 2}},
            {Subscript::all(), every},
            {Subscript::range(3, -1, 3), {3, 2, 1}},
            {Subscript::range(2), {2}},
            {viewOf(none, {0}), {}}};
  }
};

// Calls check(subscripts, the linear places that they choose) for all combinations of one to three subscripts.
template <class Check>
void forAllChoices(const Extents& extents, const Check& check) {
  Lists lists;
  for (std::size_t dimensions = 1; dimensions <= 3; ++dimensions) {
    Extents folded(extents.begin(), extents.begin() + static_cast<long>(dimensions));
    for (std::size_t i = dimensions; i < extents.size(); ++i) folded.back() *= extents[i];
    folded.resize(3, 1);
    const std::vector<Choice> one{{Subscript::all(), {1}}};
    const auto first = lists.of(folded[0]), second = dimensions > 1 ? lists.of(folded[1]) : one,
               third = dimensions > 2 ? lists.of(folded[2]) : one;
    for (const Choice& a : first) {
      for (const Choice& b : second) {
        for (const Choice& c : third) {
          std::vector<unsigned long> places;
          for (const double z : c.indices) {
            for (const double y : b.indices) {
              for (const double x : a.indices) {
                places.push_back(static_cast<unsigned long>(x - 1 + folded[0] * (y - 1 + folded[1] * (z - 1))));
              }
            }
          }
          std::vector<Subscript> subscripts{a.subscript, b.subscript, c.subscript};
          subscripts.erase(subscripts.begin() + static_cast<long>(dimensions), subscripts.end());
          check(subscripts, places);
        }
      }
    }
  }
}

template <class T>
class RecipeSubscripts : public testing::Test {};
using Elements = testing::Types<double, bool, short2>;
TYPED_TEST_SUITE(RecipeSubscripts, Elements);

TYPED_TEST(RecipeSubscripts, gatherScatterAndAssignWhatTheyChoose) {
  using T = TypeParam;
  const Extents extents{4, 3, 3, 2};
  const auto before = HostArray<T>::counting(72);
  GuardedArray<T> array(before);
  forAllChoices(extents, [&](const std::vector<Subscript>& subscripts, const std::vector<unsigned long>& places) {
    const unsigned long n = places.size();
    GuardedArray<T> out(n), into(before), all(before);
    recipes::gather<T>(nullptr, viewOf(out, {n}), viewOf(array, extents), subscripts);
    const auto gathered = out.toHost();
    expectElements(
        gathered, [&](unsigned long i) { return before[places[i]]; }, "gather");
    // Back where they came from, places that are named twice included: nothing changes but what is assigned.
    recipes::scatter<T>(nullptr, viewOf(into, extents), viewOf(out, {n}), subscripts);
    expectElements(
        into.toHost(), [&](unsigned long i) { return before[i]; }, "scatter");
    recipes::assign<T>(nullptr, viewOf(all, extents), before[5], subscripts);
    expectElements(
        all.toHost(),
        [&](unsigned long i) {
          return std::find(places.begin(), places.end(), i) == places.end() ? before[i] : before[5];
        },
        "assign");
  });
}

TEST(RecipeSubscripts, nameTheFirstBadPosition) {
  GuardedArray<double> array(wholeNumbers<double>(12, 1)), out(3), late(hostOf(std::vector<double>(300000, 2)));
  const View<const double> matrix = viewOf(array, {3, 4});
  const auto refused = [&](const char* text, const std::vector<Subscript>& subscripts) {
    expectRefused<std::out_of_range>(
        text, [&] { recipes::gather<double>(nullptr, viewOf(out, {3}), matrix, subscripts); }, out);
    expectRefused<std::out_of_range>(
        std::string(text).replace(0, 6, "assign"),
        [&] {
          recipes::assign<double>(nullptr, viewOf(array, {3, 4}), 1.0, subscripts);
        },
        array);
  };
  const auto listed = [](const std::vector<double>& values) { return GuardedArray<double>(hostOf(values)); };
  GuardedArray<double> high = listed({1, 2, 5, 0}), fraction = listed({1, 1.5, 9}), missing = listed({NAN, 1, 1}),
                       negative = listed({4, -1});
  refused("gather: subscript 2, position 3: expected a whole number from 1 to 4, came 5",
          {Subscript::all(), viewOf(high, {4})});
  refused("gather: subscript 1, position 2: expected a whole number from 1 to 3, came 1.5",
          {viewOf(fraction, {3}), viewOf(high, {4})});
  refused("gather: subscript 1, position 1: expected a whole number from 1 to 12, came nan", {viewOf(missing, {3})});
  refused("gather: subscript 2, position 2: expected a whole number from 1 to 4, came -1",
          {Subscript::range(1), viewOf(negative, {2})});
  refused("gather: subscript 1, position 3: expected a whole number from 1 to 3, came 5",
          {Subscript::range(1, 2, 3), Subscript::all()});
  refused("gather: subscript 1, position 4: expected a whole number from 1 to 3, came 0",
          {Subscript::range(3, -1, 5), Subscript::all()});
  refused("gather: subscript 1, position 1: expected a whole number from 1 to 12, came 0", {Subscript::range(0)});
  refused("gather: subscript 1, position 2: expected a whole number from 1 to 12, came 1.25",
          {Subscript::range(1, 0.25, 3)});
  // Behind the first piece that is looked at.
  gpuruntime::GenericOnes::Invoker<double>()(nullptr, 1, late.data() + 299990, 13.0);
  refused("gather: subscript 1, position 299991: expected a whole number from 1 to 12, came 13",
          {viewOf(late, {300000})});
  EXPECT_THROW(recipes::checkSubscripts(nullptr, viewOf(late, {300000}), 12), std::out_of_range);
  EXPECT_NO_THROW(recipes::checkSubscripts(nullptr, viewOf(late, {300000}), 13));
  expectRefused<std::invalid_argument>(
      "gather: output: expected 4 elements, came 3",
      [&] {
        recipes::gather<double>(nullptr, viewOf(out, {3}), matrix, {Subscript::range(1), Subscript::all()});
      },
      out);
  expectRefused<std::invalid_argument>(
      "expected 1 to 3, came 4",
      [&] {
        recipes::scatter<double>(nullptr, viewOf(array, {3, 4}), viewOf(out, {3}),
                                 std::vector<Subscript>(4, Subscript::range(1)));
      },
      array);
}

TEST(RecipeSubscripts, refuseMoreElementsThanCanBeCounted) {
  GuardedArray<double> array(wholeNumbers<double>(4, 1));
  const Subscript many = Subscript::range(1, 0, 1UL << 32);
  expectRefused<std::length_error>(
      "has too many",
      [&] {
        recipes::gather<double>(nullptr, View<double>(nullptr, 0UL), viewOf(array, {2, 2}), {many, many});
      },
      array);
}

TEST(RecipeSubscripts, becomeLinearIndices) {
  GuardedArray<double> rows(hostOf({1, 3, 2})), columns(hostOf({4, 1, 5})), pages(hostOf({2, 1, 2})), linear(3);
  const View<const double> r = viewOf(rows, {3}), c = viewOf(columns, {3}), p = viewOf(pages, {3});
  recipes::linearIndices(nullptr, viewOf(linear, {3}), {r, c}, {3, 5});
  expectElements(linear.toHost(), [](unsigned long i) { return std::vector<double>{10, 3, 14}[i]; });
  recipes::linearIndices(nullptr, viewOf(linear, {3}), {r, c, p}, {3, 5, 1, 2});
  expectElements(linear.toHost(), [](unsigned long i) { return std::vector<double>{25, 3, 29}[i]; });
  expectRefused<std::out_of_range>(
      "linearIndices: list 2, position 3: expected a whole number from 1 to 4, came 5",
      [&] {
        recipes::linearIndices(nullptr, viewOf(linear, {3}), {r, c}, {3, 4});
      },
      linear);
  expectRefused<std::invalid_argument>(
      "lists: expected 2 or 3, came 1", [&] { recipes::linearIndices(nullptr, viewOf(linear, {3}), {r}, {3}); },
      linear);
}

}  // namespace
