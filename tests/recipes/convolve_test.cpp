#include "support/recipes.hpp"

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;
using gpuruntime::recipes::Section;

struct Case {
  Extents input, filter;
};

const Section sections[] = {Section::full, Section::same, Section::valid};

// Coordinates of an element, in as many dimensions as asked for.
Extents coordinates(unsigned long at, const Extents& extents) {
  Extents place;
  for (const unsigned long extent : extents) {
    place.push_back(at % extent);
    at /= extent;
  }
  return place;
}

template <class T>
void addProduct(T& sum, const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    sum.x += a.x * b.x - a.y * b.y;
    sum.y += a.x * b.y + a.y * b.x;
  } else {
    sum += a * b;
  }
}

// The section by its definition. Whole numbers, so that the order of the sum does not matter.
template <class T>
std::vector<T> convolved(const HostArray<T>& input, const HostArray<T>& filter, Case shape, Section section,
                         Extents* extents) {
  const std::size_t dimensions = std::max(shape.input.size(), shape.filter.size());
  shape.input.resize(dimensions, 1);
  shape.filter.resize(dimensions, 1);
  Extents out, start;
  for (std::size_t i = 0; i < dimensions; ++i) {
    const unsigned long n = shape.input[i], k = shape.filter[i];
    out.push_back(section == Section::same   ? n
                  : section == Section::full ? (n == 0 ? 0 : n + k - 1)
                  : n + 1 > k                ? n + 1 - k
                                             : 0);
    start.push_back(section == Section::same ? k / 2 : section == Section::full ? 0 : k - 1);
  }
  *extents = out;
  std::vector<T> result(recipes::detail::product(out));
  for (unsigned long o = 0; o < result.size(); ++o) {
    const Extents at = coordinates(o, out);
    for (unsigned long q = 0; q < filter.size(); ++q) {
      const Extents tap = coordinates(q, shape.filter);
      unsigned long element = 0, stride = 1;
      bool isInside = true;
      for (std::size_t i = 0; i < dimensions; ++i) {
        const unsigned long p = at[i] + start[i] - tap[i];  // May wrap.
        isInside = isInside && p < shape.input[i];
        element += p * stride;
        stride *= shape.input[i];
      }
      if (isInside) addProduct(result[o], input[element], filter[q]);
    }
  }
  return result;
}

template <class T>
void checkSections(const Case& shape) {
  const auto input = wholeNumbers<T>(recipes::detail::product(shape.input), 1);
  const auto filter = wholeNumbers<T>(recipes::detail::product(shape.filter), 2);
  GuardedArray<T> x(input), h(filter);
  for (const Section section : sections) {
    SCOPED_TRACE(recipes::detail::inWords(shape.input) + " by " + recipes::detail::inWords(shape.filter) +
                 ", section " + std::to_string(static_cast<int>(section)));
    Extents extents;
    const std::vector<T> expected = convolved(input, filter, shape, section, &extents);
    EXPECT_EQ(recipes::convolvedExtents(shape.input, shape.filter, section), extents);
    GuardedArray<T> out(expected.size());
    // An empty section takes no memory.
    const std::size_t bytes = expected.empty() ? 0 : recipes::convolveWorkspace<T>(shape.input, shape.filter);
    expectMemory(
        bytes,
        [&](auto& memory) {
          recipes::convolve<T>(nullptr, viewOf(out, extents), View<const T>(x.data(), shape.input),
                               View<const T>(h.data(), shape.filter), section, memory);
        },
        out);
    const auto actual = out.toHost();
    for (unsigned long i = 0; i < expected.size(); ++i) {
      // Zeros may differ in sign: the reference does not add the zeros outside.
      if constexpr (isComplex<T>) {
        ASSERT_TRUE(actual[i].x == expected[i].x && actual[i].y == expected[i].y) << "element " << i;
      } else {
        ASSERT_EQ(actual[i], expected[i]) << "element " << i;
      }
    }
  }
}

template <class T>
class RecipeConvolve : public testing::Test {};
using Floats = testing::Types<double, float, double2, float2>;
TYPED_TEST_SUITE(RecipeConvolve, Floats);

// One tap, around the members and their halos, several stretches; more taps than elements; rows.
TYPED_TEST(RecipeConvolve, ofVectorsWithFiltersOfAnyLength) {
  for (const unsigned long n : {1UL, 40UL, 600UL, 2500UL}) {
    for (const unsigned long k : {1UL, 2UL, 7UL, 17UL, 31UL, 48UL, 81UL, 82UL, 145UL, 333UL}) {
      checkSections<TypeParam>({{n}, {k}});
    }
  }
  checkSections<TypeParam>({{1, 300}, {1, 50}});
  checkSections<TypeParam>({{1, 1, 40}, {1, 1, 9}});
  checkSections<TypeParam>({{0}, {5}});
}

// Squares with and without a member, lines, both directions of passes, filters larger than the matrix along one
// dimension and along both.
TYPED_TEST(RecipeConvolve, ofMatricesAndPages) {
  const std::vector<Case> cases{{{40, 30}, {3, 3}},       {{70, 20}, {5, 5}},      {{33, 47}, {7, 7}},
                                {{64, 50}, {9, 9}},       {{1, 1}, {3, 3}},        {{50, 40}, {4, 4}},
                                {{50, 40}, {11, 11}},     {{90, 35}, {1, 7}},      {{35, 90}, {7, 1}},
                                {{60, 70}, {3, 40}},      {{60, 70}, {40, 3}},     {{20, 30}, {6, 45}},
                                {{300, 8}, {2, 5}},       {{5, 4}, {9, 8}},        {{1, 40}, {5, 1}},
                                {{12, 9, 6}, {3, 2, 4}},  {{12, 9, 6}, {2, 5, 3}}, {{20, 11, 5}, {3, 3}},
                                {{20, 11, 5}, {1, 1, 3}}, {{4, 3, 2}, {3, 3, 5}},  {{9, 8, 3, 4}, {2, 3, 2, 3}},
                                {{0, 5}, {3, 3}},         {{30, 20}, {2}},         {{30}, {2, 3}}};
  for (const Case& shape : cases) checkSections<TypeParam>(shape);
}

// Of 150 taps the first pass of `double` takes 81, the most that the member of 64 does, and the second 69.
TEST(RecipeConvolve, addsStretchesInTheStatedOrder) {
  const unsigned long n = 700, k = 150, start = k / 2;
  HostArray<double> input(n), filter(k);
  std::minstd_rand next(3);
  for (unsigned long i = 0; i < n; ++i) input[i] = static_cast<double>(next()) / 1e9 - 1;
  for (unsigned long i = 0; i < k; ++i) filter[i] = static_cast<double>(next()) / 3e9;
  GuardedArray<double> x(input), h(filter), out(n);
  recipes::convolve<double>(nullptr, viewOf(out, {n}), View<const double>(x.data(), n), View<const double>(h.data(), k),
                            Section::same);
  expectElements(out.toHost(), [&](unsigned long o) {
    const auto stretch = [&](unsigned long from, unsigned long to) {
      double sum = 0;
      for (unsigned long j = from; j < to; ++j) {
        const unsigned long at = o + start - j;  // May wrap.
        sum = std::fma(at < n ? input[at] : 0.0, filter[j], sum);
      }
      return sum;
    };
    // The second pass has nothing to give in front of its first tap.
    return o + start < 81 ? stretch(0, 81) : stretch(0, 81) + stretch(81, k);
  });
}

TEST(RecipeConvolve, refusesWhatDoesNotFit) {
  GuardedArray<double> x(wholeNumbers<double>(12, 1)), out(20);
  const View<const double> matrix(x.data(), {3, 4}), none(nullptr, 0UL), filter(x.data(), {2, 2});
  expectRefused<std::invalid_argument>(
      "convolve: output: expected 4 x 5 elements, came 20 x 2",
      [&] {
        recipes::convolve<double>(nullptr, View<double>(x.data(), {20, 2}), matrix, filter, Section::full);
      },
      x);
  expectRefused<std::invalid_argument>(
      "filter: expected at least one tap",
      [&] { recipes::convolve<double>(nullptr, viewOf(out, {20}), matrix, none, Section::same); }, out);
}

}  // namespace
