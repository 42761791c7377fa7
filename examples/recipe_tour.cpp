// One call for what takes several: finds, sorts, groups, smooths and looks up readings, and meets a bad index.
#include <gpuruntime/recipes/recipes.hpp>

#include <cstdio>
#include <stdexcept>
#include <vector>

namespace {

using namespace gpuruntime::recipes;

template <class T>
void print(const char* name, const DeviceArray<T>& array) {
  std::printf("%-10s", name);
  for (const T value : array.toHost()) std::printf(" %g", static_cast<double>(value));
  std::printf("\n");
}

}  // namespace

int main() {
  const DeviceArray<double> readings(std::vector<double>{4, 0, 7, 4, 0, 9, 7, 4});

  // Intermediate results lie in a workspace of ours: no call asks the device for memory.
  DeviceArray<unsigned char> memory(4096);
  Workspace workspace(memory.data(), memory.size());

  // Where readings are not 0, and the last two such places.
  {
    const NonZeros<double> found(nullptr, readings, workspace);
    DeviceArray<double> all(found.count()), lastTwo(2);
    found.list(all);
    found.list(lastTwo, gpuruntime::FindFirstLast::last);
    print("found", all);
    print("last two", lastTwo);
  }

  // Sorted, with the places they came from, and in groups of equals.
  DeviceArray<double> sorted(8), places(8);
  sorted.copyFrom(readings);
  sort<double>(nullptr, sorted, places, 0, true, workspace);
  const Distinct<double> groups(nullptr, sorted, false, workspace);
  DeviceArray<double> values(groups.count()), starts(groups.count());
  groups.list(values, starts);
  print("sorted", sorted);
  print("places", places);
  print("values", values);
  print("start at", starts);

  // The greatest, and a quarter of the sum of three neighbours.
  DeviceArray<double> greatest(1), position(1), smooth(8);
  maximum<double>(nullptr, greatest, position, readings, workspace);
  const DeviceArray<double> quarters(std::vector<double>(3, 0.25));
  convolve<double>(nullptr, smooth, readings, quarters, Section::same, workspace);
  print("greatest", greatest);
  print("at", position);
  print("smooth", smooth);

  // Every third reading, and an index that is not there.
  DeviceArray<double> some(3);
  gather<double>(nullptr, some, readings, {Subscript::range(1, 3, 3)});
  print("some", some);
  try {
    const DeviceArray<double> list(std::vector<double>{1, 8, 9});
    gather<double>(nullptr, some, readings, {list});
  } catch (const std::out_of_range& error) {
    std::printf("%s\n", error.what());
  }
}
