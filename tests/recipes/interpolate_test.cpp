#include "support/recipes.hpp"

namespace {

using namespace testsupport;
namespace recipes = gpuruntime::recipes;
using gpuruntime::recipes::InterpolationRules;
using gpuruntime::recipes::Queries;
using gpuruntime::recipes::Views;

const Extents pointsOf[] = {{9}, {5, 6}, {4, 3, 5}, {3, 4, 2, 3}, {2, 3, 2, 2, 3}};

// Between the points around the query along the last dimension, of what the earlier ones give. All numbers are short
// binary fractions, so that the order of operations does not matter.
double linear(const HostArray<double>& values, const std::vector<std::vector<double>>& grids,
              const std::vector<double>& query, std::size_t dimensions, unsigned long at, double outside) {
  if (dimensions == 0) return values[at];
  const auto& grid = grids[dimensions - 1];
  const double q = query[dimensions - 1];
  if (!(q >= grid.front() && q <= grid.back())) return outside;
  unsigned long stride = 1;
  for (std::size_t i = 0; i + 1 < dimensions; ++i) stride *= grids[i].size();
  std::size_t bin = 0;
  while (bin + 2 < grid.size() && q >= grid[bin + 1]) ++bin;
  const double t = (q - grid[bin]) / (grid[bin + 1] - grid[bin]);
  const double low = linear(values, grids, query, dimensions - 1, at + bin * stride, outside),
               high = linear(values, grids, query, dimensions - 1, at + (bin + 1) * stride, outside);
  return low * (1 - t) + high * t;
}

HostArray<double> hostOf(const std::vector<double>& values) {
  HostArray<double> host(values.size());
  std::copy(values.begin(), values.end(), host.data());
  return host;
}

TEST(RecipeInterpolate, onGridsOfOneToFiveDimensionsInBothForms) {
  for (const Extents& points : pointsOf) {
    const std::size_t dimensions = points.size();
    const auto values = wholeNumbers<double>(recipes::detail::product(points), 2);
    GuardedArray<double> v(values);
    for (const bool isColon : {false, true}) {
      SCOPED_TRACE(std::to_string(dimensions) + (isColon ? " dimensions, colon" : " dimensions"));
      std::vector<std::vector<double>> grids;
      std::vector<GuardedArray<double>> gridArrays, meshArrays, scatteredArrays;
      std::vector<std::vector<double>> mesh, scattered;
      Views<double> gridViews, meshViews, scatteredViews;
      Extents counts;
      for (std::size_t i = 0; i < dimensions; ++i) {
        std::vector<double> grid, m, s;
        for (unsigned long p = 0; p < points[i]; ++p) grid.push_back(isColon ? 1.0 + p : (1 << p) - 2.0);
        for (int k = 0; k < 5 - static_cast<int>(i % 3); ++k) m.push_back(grid[0] + k * 0.75 - (k == 4 ? 9 : 0));
        for (int k = 0; k < 300; ++k) s.push_back(grid[0] - 0.5 + (k * 7 + k * static_cast<int>(i)) % 11 * 0.25);
        counts.push_back(m.size());
        gridArrays.emplace_back(hostOf(grid));
        meshArrays.emplace_back(hostOf(m));
        scatteredArrays.emplace_back(hostOf(s));
        grids.push_back(grid);
        mesh.push_back(m);
        scattered.push_back(s);
      }
      for (std::size_t i = 0; i < dimensions; ++i) {
        if (!isColon) gridViews.push_back(viewOf(gridArrays[i], {points[i]}));
        meshViews.push_back(viewOf(meshArrays[i], {counts[i]}));
        scatteredViews.push_back(viewOf(scatteredArrays[i], {300}));
      }
      InterpolationRules<double> rules;
      rules.extrapolation = 64;
      GuardedArray<double> onMesh(recipes::detail::product(counts)), atPoints(300);
      expectMemory(
          recipes::interpolateWorkspace(counts, Queries::mesh),
          [&](auto& memory) {
            recipes::interpolate<double, double>(nullptr, viewOf(onMesh, counts), gridViews, viewOf(v, points),
                                                 meshViews, Queries::mesh, rules, memory);
          },
          onMesh);
      recipes::interpolate<double, double>(nullptr, viewOf(atPoints, {300}), gridViews, viewOf(v, points),
                                           scatteredViews, Queries::scattered, rules);
      expectElements(onMesh.toHost(), [&](unsigned long at) {
        std::vector<double> query;
        for (std::size_t i = 0; i < dimensions; at /= counts[i], ++i) query.push_back(mesh[i][at % counts[i]]);
        return linear(values, grids, query, dimensions, 0, 64) + 0.0;
      });
      expectElements(atPoints.toHost(), [&](unsigned long at) {
        std::vector<double> query;
        for (std::size_t i = 0; i < dimensions; ++i) query.push_back(scattered[i][at]);
        return linear(values, grids, query, dimensions, 0, 64) + 0.0;
      });
    }
  }
}

TEST(RecipeInterpolate, refusesGridsAndShapesThatDoNotFit) {
  GuardedArray<double> values(wholeNumbers<double>(12, 1)), query(hostOf({1, 2})), out(4), good(hostOf({0, 1, 5})),
      good4(hostOf({1, 2, 3, 4})), equal(hostOf({0, 1, 1})), endless(hostOf({0, 1, INFINITY}));
  const View<const double> q = viewOf(query, {2}), g3 = viewOf(good, {3}), g4 = viewOf(good4, {4});
  const auto refused = [&](const char* text, const Views<double>& grids, const Extents& extents,
                           const Views<double>& queries, Queries form, InterpolationRules<double> rules = {}) {
    expectRefused<std::invalid_argument>(
        text,
        [&] {
          recipes::interpolate<double, double>(nullptr, viewOf(out, {4}), grids, viewOf(values, extents), queries, form,
                                               rules);
        },
        out);
  };
  refused("grid 1: expected strictly increasing points", {viewOf(equal, {3}), g4}, {3, 4}, {q, q}, Queries::mesh);
  refused("grid 1: expected finite points", {viewOf(endless, {3}), g4}, {3, 4}, {q, q}, Queries::mesh);
  refused("grid 2: expected 4 elements, came 3", {g3, g3}, {3, 4}, {q, q}, Queries::mesh);
  refused("grids: expected none or 2, came 1", {g3}, {3, 4}, {q, q}, Queries::mesh);
  refused("values: expected 2 dimensions, came 3 x 2 x 2", {}, {3, 2, 2}, {q, q}, Queries::mesh);
  refused("values: expected at least 2 along each dimension, came 12 x 1", {}, {12, 1}, {q, q}, Queries::mesh);
  refused("queries: expected 1 to 5 dimensions, came 0", {}, {3, 4}, {}, Queries::mesh);
  refused("output: expected 2 elements, came 4", {}, {3, 4}, {q, q}, Queries::scattered);
  refused("queries: expected 2 elements, came 3", {}, {3, 4}, {q, g3}, Queries::scattered);
  InterpolationRules<double> constant;
  constant.within = gpuruntime::InterpTypeConstant;
  refused("within: expected InterpTypeLinear or InterpTypeNearest", {g3, g4}, {3, 4}, {q, q}, Queries::mesh, constant);
}

TEST(RecipeGridVector, takesTheVectorOutOfAMeshAndChecksIt) {
  const Extents extents{3, 4, 2};
  HostArray<float> full(24);
  for (unsigned long i = 0; i < 24; ++i) full[i] = static_cast<float>(i / 3 % 4) * 2;
  GuardedArray<float> array(full), vector(4), three(3);
  recipes::gridVector<float>(nullptr, viewOf(vector, {4}), viewOf(array, extents), 1);
  expectElements(vector.toHost(), [](unsigned long i) { return static_cast<float>(i) * 2; });
  expectRefused<std::invalid_argument>(
      "vector: expected 4 elements, came 3",
      [&] { recipes::gridVector<float>(nullptr, viewOf(three, {3}), viewOf(array, extents), 1); }, three);
  expectRefused<std::invalid_argument>("expected one vector repeated along dimension 0", [&] {
    recipes::gridVector<float>(nullptr, viewOf(three, {3}), viewOf(array, extents), 0);
  });
}

}  // namespace
