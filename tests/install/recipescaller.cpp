// A caller that leaves device memory and chains of calls to the recipes: the same source for any backend.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/recipes.hpp>

int main() {
  gpuruntime::recipes::DeviceArray<int> numbers(4), total(1);
  gpuruntime::IntColon::Invoker<int>()(nullptr, 4, numbers.data(), 1, 2);
  gpuruntime::recipes::sum<int>(nullptr, total, numbers);
  return total.toHost()[0] == 16 ? 0 : 1;
}
