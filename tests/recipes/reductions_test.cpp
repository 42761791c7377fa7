#include "support/reductions.hpp"
#include "support/recipes.hpp"
#include "support/scanreference.hpp"

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;

// Around a chunk, several chunks, the last one short.
const unsigned long lengths[] = {0, 1, 257, 16383, 16384, 16385, 40000, 3 * 16384, 16384 * 20 + 1};

// Chunks as segments, then their results, until one is left.
template <class Rule, class T>
T byChunks(HostArray<T> x) {
  if (x.size() == 0) return Rule::template identity<T>();
  do {
    const auto results = reduceInOrder(
        x, Shape{x.size(), 16384, 1}, Rule::template identity<T>(), [](const T& value) { return value; },
        [](const T& a, const T& b) { return Rule::apply(a, b); });
    x = HostArray<T>(results.size());
    std::copy(results.begin(), results.end(), x.data());
  } while (x.size() > 1);
  return x[0];
}

template <class T>
class RecipeSum : public testing::Test {};
using SumTypes = testing::Types<double, float, signed char, unsigned short, int2, float2>;
TYPED_TEST_SUITE(RecipeSum, SumTypes);

TYPED_TEST(RecipeSum, sumsAndMultipliesByChunksInTheStatedOrder) {
  using T = TypeParam;
  for (const unsigned long n : lengths) {
    SCOPED_TRACE(n);
    const auto terms = summands<T>(n), factorsOf = factors<T>(n);
    GuardedArray<T> x(terms), f(factorsOf), result(1), productResult(1);
    expectMemory(
        recipes::sumWorkspace<T>(n),
        [&](auto& memory) { recipes::sum<T>(nullptr, viewOf(result, {1}), View<const T>(x.data(), n), memory); },
        result);
    expectElements(
        result.toHost(), [&](unsigned long) { return byChunks<SumRule>(terms); }, "sum");
    recipes::product<T>(nullptr, viewOf(productResult, {1}), View<const T>(f.data(), n));
    expectElements(
        productResult.toHost(), [&](unsigned long) { return byChunks<ProdRule>(factorsOf); }, "product");
  }
}

TEST(RecipeSum, inDoubleNothingIsClamped) {
  const unsigned long n = 100001;
  HostArray<signed char> input(n);
  std::fill_n(input.data(), n, static_cast<signed char>(127));
  GuardedArray<signed char> x(input);
  GuardedArray<double> result(1);
  recipes::sumAsDouble<signed char>(nullptr, viewOf(result, {1}), View<const signed char>(x.data(), {1, n}));
  EXPECT_EQ(result.toHost()[0], 127.0 * n);
  recipes::productAsDouble<signed char>(nullptr, viewOf(result, {1}), View<const signed char>(x.data(), 9));
  EXPECT_EQ(result.toHost()[0], std::pow(127.0, 9));
}

TEST(RecipeExtremes, findTheFirstOfEqualsInAnyChunk) {
  for (const unsigned long n : {1UL, 16384UL, 16385UL, 16384UL * 20 + 1}) {
    auto input = wholeNumbers<double>(n, 7);
    for (unsigned long i = 0; i < n; i += 5) input[i] = std::nan("");
    GuardedArray<double> x(input), value(1), position(1);
    for (const bool greatest : {false, true}) {
      unsigned long best = 0;
      for (unsigned long i = 0; i < n; ++i) {
        const bool better = greatest ? input[i] > input[best] : input[i] < input[best];
        if (better || (std::isnan(input[best]) && !std::isnan(input[i]))) best = i;
      }
      expectMemory(
          recipes::extremeWorkspace<double>(n),
          [&](auto& memory) {
            (greatest ? recipes::maximum<double> : recipes::minimum<double>)(nullptr, viewOf(value, {1}),
                                                                             viewOf(position, {1}),
                                                                             View<const double>(x.data(), n), memory);
          },
          value, position);
      EXPECT_TRUE(sameBits(value.toHost()[0], input[best]));
      EXPECT_EQ(position.toHost()[0], static_cast<double>(best + 1)) << n;
    }
  }
}

TEST(RecipeExtremes, goThroughThreeLevels) {
  const unsigned long n = 16384UL * 16384 + 5;
  GuardedArray<unsigned char> x(n), value(1);
  GuardedArray<double> position(1);
  gpuruntime::GenericOnes::Invoker<unsigned char>()(nullptr, n, x.data(), 7);
  for (const unsigned long at : {n - 2, 16384UL * 9000 + 77}) {
    gpuruntime::GenericOnes::Invoker<unsigned char>()(nullptr, 1, x.data() + at, 9);
    recipes::maximum<unsigned char>(nullptr, viewOf(value, {1}), viewOf(position, {1}),
                                    View<const unsigned char>(x.data(), n));
    EXPECT_EQ(value.toHost()[0], 9);
    EXPECT_EQ(position.toHost()[0], static_cast<double>(at + 1));
  }
  GuardedArray<double> total(1);
  recipes::sumAsDouble<unsigned char>(nullptr, viewOf(total, {1}), View<const unsigned char>(x.data(), n));
  EXPECT_EQ(total.toHost()[0], 7.0 * static_cast<double>(n) + 4);
}

TEST(RecipeReductions, refuseWhatDoesNotFit) {
  GuardedArray<double> x(6), one(1), two(2);
  const View<const double> matrix(x.data(), {2, 3}), vector(x.data(), 6), none(nullptr, 0UL);
  expectRefused<std::invalid_argument>(
      "sum: output: expected 1 elements, came 2", [&] { recipes::sum<double>(nullptr, viewOf(two, {2}), vector); },
      two);
  expectRefused<std::invalid_argument>(
      "product: input: expected a vector, came 2 x 3",
      [&] { recipes::product<double>(nullptr, viewOf(one, {1}), matrix); }, one);
  expectRefused<std::invalid_argument>(
      "minimum: input: expected at least one element",
      [&] { recipes::minimum<double>(nullptr, viewOf(one, {1}), viewOf(two, {1}), none); }, one, two);
  expectRefused<std::invalid_argument>(
      "maximum: position: expected 1 elements, came 2",
      [&] { recipes::maximum<double>(nullptr, viewOf(one, {1}), viewOf(two, {2}), vector); }, one, two);
}

}  // namespace
