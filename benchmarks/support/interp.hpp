/// @file
/// Grids, queries and bins of the interpolation benchmarks.
#pragma once

#include <algorithm>
#include <map>
#include <random>
#include <tuple>
#include <vector>

#include "support/bench.hpp"

namespace benchsupport {

using Sizes = std::vector<unsigned long>;

enum class Order { sorted, shuffled };

inline constexpr unsigned long lineQueries = 10000000;

inline std::vector<double> evenGrid(unsigned long n) {
  std::vector<double> grid(n);
  for (unsigned long i = 0; i < n; ++i) grid[i] = static_cast<double>(i) / static_cast<double>(n - 1);
  return grid;
}

// Steps that differ by up to a factor of 16.
inline std::vector<double> unevenGrid(unsigned long n) {
  std::minstd_rand next(1);
  std::vector<double> grid(n);
  double point = 0;
  for (double& entry : grid) entry = point += 1 + static_cast<double>(next() % 16);
  for (double& entry : grid) entry /= point;
  return grid;
}

/// Queries over [low, high], made once: every repetition asks for them anew.
inline const std::vector<double>& queriesBetween(double low, double high, unsigned long count, Order order,
                                                 unsigned int seed = 1) {
  static std::map<std::tuple<double, double, unsigned long, Order, unsigned int>, std::vector<double>> made;
  std::vector<double>& queries = made[{low, high, count, order, seed}];
  if (!queries.empty()) return queries;
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> between(low, high);
  queries.resize(count);
  for (double& query : queries) query = between(engine);
  if (order == Order::sorted) std::sort(queries.begin(), queries.end());
  return queries;
}

/// Values that are no numbers of few bits.
inline DeviceArray<double> someValues(unsigned long count) {
  std::vector<double> values(count);
  for (unsigned long i = 0; i < count; ++i) values[i] = static_cast<double>(i * 2654435761 % 1000003) / 7.0;
  return DeviceArray<double>(values);
}

/// `count` even steps from low to high: one side of a mesh.
inline std::vector<double> stepsBetween(double low, double high, unsigned long count) {
  std::vector<double> steps = evenGrid(count);
  for (double& step : steps) step = low + (high - low) * step;
  return steps;
}

/// The bins of a mesh whose queries along each dimension are these, on colon grids of these sizes.
inline DeviceArray<long long> binsOfMesh(const std::vector<DeviceArray<double>>& queries, const Sizes& gridSizes) {
  unsigned long size = 0;
  for (const DeviceArray<double>& query : queries) size += (query.size() + 15) / 16 * 16;
  DeviceArray<long long> bins(size);
  unsigned long offset = 0;
  for (unsigned long d = 0; d < queries.size(); ++d) {
    gpuruntime::IndexSearch_ColonGrid::Invoker<double>()(nullptr, bins.data(), offset, queries[d].data(), gridSizes[d],
                                                         queries[d].size());
    offset += (queries[d].size() + 15) / 16 * 16;
  }
  return bins;
}

}  // namespace benchsupport
