#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>

int main() {
  gpuruntime::recipes::DeviceArray<int> matrix(2, 3), turned(3, 2);  // rows, columns; column by column in memory
  gpuruntime::IntColon::Invoker<int>()(nullptr, 6, matrix.data(), 1, 1);
  gpuruntime::Rot90::Invoker<int>()(nullptr, turned.data(), matrix.data(), 2, 3, 1, true);
  const auto rows = turned.toHost();
  for (int row = 0; row < 3; ++row) std::printf("%d %d\n", rows[row], rows[row + 3]);
}
