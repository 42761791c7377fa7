#include "support/recipes.hpp"

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;

// Direct form II transposed, an operation at a time as stated; `states` are the initial ones, then the last.
std::vector<double> filtered(const std::vector<double>& x, std::vector<double> b, std::vector<double> a,
                             std::vector<double>& states) {
  const std::size_t N = states.size();
  b.resize(N + 1);
  a.resize(N + 1);
  const double inverse = 1 / a[0];
  for (double& tap : b) tap *= inverse;
  for (double& tap : a) tap *= inverse;
  std::vector<double> y;
  for (const double sample : x) {
    y.push_back(std::fma(b[0], sample, states[0]));
    for (std::size_t j = 0; j < N; ++j) {
      const double behind = j + 1 < N ? states[j + 1] : 0.0, back = a[j + 1] * y.back();
      states[j] = std::fma(b[j + 1], sample, behind + 0.0) - back;
    }
  }
  return y;
}

struct Coefficients {
  std::vector<double> b, a;
};

HostArray<double> hostOf(const std::vector<double>& values) {
  HostArray<double> host(values.size());
  std::copy(values.begin(), values.end(), host.data());
  return host;
}

const std::vector<Coefficients> filters{
    {{2}, {4}},
    {{0.5, 0.25}, {1}},
    {{1}, {2, -1, 0.3}},
    {{0.2, 0.1, 0.4, -0.7}, {1, 0.3, -0.2}},
    {{.1, .2, .3, .4, .5, .6, .7, .8, .9, 1, 1.1}, {1, -.1, .05, -.02, .01, .02, -.01, .03, .01, .02, .01}}};

TEST(RecipeFilter, filtersLinesAlongAnyDimensionAtOnceAndInPieces) {
  const std::vector<std::pair<Extents, std::size_t>> shapes{{{100}, 0},      {{50, 7}, 0},    {{7, 50}, 1},
                                                            {{3, 40, 5}, 1}, {{3, 4, 20}, 2}, {{1, 30}, 1}};
  for (const auto& [extents, dimension] : shapes) {
    for (const Coefficients& coefficients : filters) {
      SCOPED_TRACE(recipes::detail::inWords(extents) + ", " + std::to_string(coefficients.b.size()));
      const recipes::detail::Line line = recipes::detail::lineAlong("test", extents, dimension);
      const unsigned long n = line.S * line.L * line.O, lines = line.S * line.O,
                          N = recipes::filterStates(coefficients.b.size(), coefficients.a.size());
      const auto input = wholeNumbers<double>(n, 5), initial = wholeNumbers<double>(lines * N, 6);
      GuardedArray<double> x(input), zi(initial), b(hostOf(coefficients.b)), a(hostOf(coefficients.a)), y(n),
          zf(lines * N), plain(n), shared(n);
      const View<const double> bView = viewOf(b, {coefficients.b.size()}), aView = viewOf(a, {coefficients.a.size()}),
                               xView = viewOf(x, extents);
      recipes::filter<double>(nullptr, viewOf(y, extents), bView, aView, xView, dimension, viewOf(zi, {lines * N}),
                              viewOf(zf, {lines * N}));
      recipes::filter<double>(nullptr, viewOf(plain, extents), bView, aView, xView, dimension);
      recipes::filter<double>(nullptr, viewOf(shared, extents), bView, aView, xView, dimension, viewOf(zi, {N}));
      const auto out = y.toHost(), last = zf.toHost(), withoutStates = plain.toHost(), withShared = shared.toHost();
      for (unsigned long i = 0; i < lines; ++i) {
        const unsigned long first = i % line.S + i / line.S * line.S * line.L;
        std::vector<double> samples;
        for (unsigned long t = 0; t < line.L; ++t) samples.push_back(input[first + t * line.S]);
        std::vector<double> states(initial.data() + i * N, initial.data() + (i + 1) * N), zeros(N),
            common(initial.data(), initial.data() + N);
        const auto expected = filtered(samples, coefficients.b, coefficients.a, states),
                   fromZero = filtered(samples, coefficients.b, coefficients.a, zeros),
                   fromCommon = filtered(samples, coefficients.b, coefficients.a, common);
        for (unsigned long t = 0; t < line.L; ++t) {
          ASSERT_TRUE(sameBits(out[first + t * line.S], expected[t])) << "line " << i << ", " << t;
          ASSERT_TRUE(sameBits(withoutStates[first + t * line.S], fromZero[t]));
          ASSERT_TRUE(sameBits(withShared[first + t * line.S], fromCommon[t]));
        }
        for (unsigned long j = 0; j < N; ++j) ASSERT_TRUE(sameBits(last[i * N + j], states[j]));
      }
    }
  }
}

TEST(RecipeFilter, refusesWhatNoMemberCovers) {
  GuardedArray<double> x(wholeNumbers<double>(20, 1)), y(20), few(19), zero(hostOf({0, 1}));
  const View<const double> in(x.data(), 20), one(x.data(), 1), twelve(x.data(), 12), none(nullptr, 0UL);
  const auto refused = [&](const char* text, View<double> out, View<const double> b, View<const double> a,
                           std::size_t dimension, View<const double> initial) {
    expectRefused<std::invalid_argument>(
        text, [&] { recipes::filter<double>(nullptr, out, b, a, in, dimension, initial); }, y, few);
  };
  refused("filter: b: expected 1 to 11 coefficients, came 12", viewOf(y, {20}), twelve, one, 0, none);
  refused("filter: a: expected 1 to 11 coefficients, came 0", viewOf(y, {20}), one, none, 0, none);
  refused("filter: a: expected a first coefficient other than 0", viewOf(y, {20}), one, viewOf(zero, {2}), 0, none);
  refused("filter: y: expected 20 elements, came 19", viewOf(few, {19}), one, one, 0, none);
  refused("filter: dimension: expected one of 1", viewOf(y, {20}), one, one, 1, none);
  refused("filter: initial: expected 1 elements, came 12", viewOf(y, {20}), one, one, 0, twelve);
}

}  // namespace
