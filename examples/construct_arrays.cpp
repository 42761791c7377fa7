// Builds arrays by rule: ranges, an identity, evenly spaced values, powers of ten, and the subscripts of a matrix.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>

namespace {

using gpuruntime::recipes::DeviceArray;

template <class T>
void print(const char* name, const DeviceArray<T>& matrix) {
  const auto values = matrix.toHost();
  std::printf("%s\n", name);
  for (unsigned long r = 0; r < matrix.extent(0); ++r) {
    for (unsigned long c = 0; c < matrix.extent(1); ++c) {
      std::printf(" %5g", static_cast<double>(values[c * matrix.extent(0) + r]));
    }
    std::printf("\n");
  }
}

}  // namespace

int main() {
  // 0, 0.1, ..., 1. Colon counts element 7 from the end that is nearer, 1 - 3 * 0.1; IntColon takes 7 * 0.1.
  const unsigned long n = 11;
  DeviceArray<double> tenths(n), products(n);
  gpuruntime::Colon::Invoker<double>()(nullptr, n, tenths.data(), 0, 0.1, 1);
  gpuruntime::IntColon::Invoker<double>()(nullptr, n, products.data(), 0, 0.1);
  std::printf("element 7: %.16g by Colon, %.16g by IntColon\n", tenths.toHost()[7], products.toHost()[7]);

  // Zeros first, then the diagonal.
  DeviceArray<float> identity(3, 4);
  gpuruntime::GenericOnes::Invoker<float>()(nullptr, 12, identity.data(), 0);
  gpuruntime::Eye::Invoker<float>()(nullptr, 3, identity.data(), 3);
  print("identity", identity);

  DeviceArray<double> even(1, 5), powers(1, 5);
  gpuruntime::Linspace::Invoker<double>()(nullptr, 5, even.data(), 1, 2);
  gpuruntime::Logspace::Invoker<double>()(nullptr, 5, powers.data(), -2, 2);
  print("5 values from 1 to 2", even);
  print("10^-2 to 10^2", powers);

  // The row and the column of each element: runs of 1 from 1 to 2, and runs of 2 from 1 to 3.
  DeviceArray<int> rows(2, 3), columns(2, 3);
  gpuruntime::FillArrayWithRunningIndex::Invoker<int>()(nullptr, 6, rows.data(), 1, 2);
  gpuruntime::FillArrayWithRunningIndex::Invoker<int>()(nullptr, 6, columns.data(), 2, 3);
  print("rows", rows);
  print("columns", columns);
}
