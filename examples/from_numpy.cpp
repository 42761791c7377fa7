// Some lines of NumPy, each as a call of a recipe.
#include <gpuruntime/recipes/recipes.hpp>

#include <cstdio>
#include <vector>

namespace {

using namespace gpuruntime::recipes;

template <class T>
void print(const char* name, const DeviceArray<T>& values) {
  std::printf("%-12s", name);
  for (const T value : values.toHost()) std::printf(" %3g", static_cast<double>(value));
  std::printf("\n");
}

}  // namespace

int main() {
  const std::vector<double> numbers{3, 1, 2, 3, 1};
  const DeviceArray<double> x(numbers);

  // np.sort(x), np.argsort(x, kind="stable") + 1
  DeviceArray<double> sorted(numbers), places(5);
  sort<double>(nullptr, sorted, places, 0);
  print("sort", sorted);
  print("argsort", places);

  // np.unique(x)
  const Distinct<double> distinct(nullptr, sorted);
  DeviceArray<double> values(distinct.count()), starts(distinct.count());
  distinct.list(values, starts);
  print("unique", values);

  // np.isin(x, [1, 7]), np.flatnonzero(np.isin(x, [1, 7])) + 1
  const DeviceArray<double> wanted(std::vector<double>{1, 7});
  DeviceArray<bool> member(5);
  DeviceArray<double> location(5);
  isMember<double>(nullptr, member, location, x, wanted);
  const NonZeros<bool> found(nullptr, member);
  DeviceArray<double> positions(found.count());
  found.list(positions);
  print("isin", member);
  print("flatnonzero", positions);

  // np.cumsum(x)
  DeviceArray<double> running(numbers);
  cumulativeSum<double>(nullptr, running, 0);
  print("cumsum", running);

  // np.convolve(x, [1, 10]). The section `same` leaves out the first of its elements; in NumPy it is the last.
  const DeviceArray<double> taps(std::vector<double>{1, 10});
  DeviceArray<double> full(6), same(5);
  convolve<double>(nullptr, full, x, taps, Section::full);
  convolve<double>(nullptr, same, x, taps, Section::same);
  print("convolve", full);
  print("same", same);

  // np.interp([0, 1.5, 9], [1, 2, 3.5], [10, 20, 50])
  const DeviceArray<double> grid(std::vector<double>{1, 2, 3.5}), heights(std::vector<double>{10, 20, 50});
  const DeviceArray<double> queries(std::vector<double>{0, 1.5, 9});
  DeviceArray<double> between(3);
  InterpolationRules<double> rules;
  rules.outside = gpuruntime::InterpTypeNearest;
  interpolate<double, double>(nullptr, between, {grid}, heights, {queries}, Queries::mesh, rules);
  print("interp", between);

  // x[[3, 0]], x[::-1]
  const DeviceArray<double> list(std::vector<double>{4, 1});
  DeviceArray<double> two(2), backwards(5);
  gather<double>(nullptr, two, x, {list});
  gather<double>(nullptr, backwards, x, {Subscript::range(5, -1, 5)});
  print("x[[3, 0]]", two);
  print("x[::-1]", backwards);
}
