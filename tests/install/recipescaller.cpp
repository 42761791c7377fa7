// A caller that leaves device memory to the recipes: the same source for any backend.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

int main() {
  gpuruntime::recipes::DeviceArray<int> numbers(4);
  gpuruntime::IntColon::Invoker<int>()(nullptr, 4, numbers.data(), 1, 2);
  return numbers.toHost()[3] == 7 ? 0 : 1;
}
