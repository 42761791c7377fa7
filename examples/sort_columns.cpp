// Sorts a vector with the positions of its elements, the columns of a matrix, and complex values.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using gpuruntime::recipes::DeviceArray;

void print(const char* name, const DeviceArray<double>& values) {
  std::printf("%-20s", name);
  for (const double value : values.toHost()) std::printf(" %3g", value);
  std::printf("\n");
}

}  // namespace

int main() {
  // Descending: NaN in front, and the two 2 in their order. The index holds 1 to 5 before.
  const unsigned long n = 5;
  DeviceArray<double> vector(std::vector<double>{2, 7, std::nan(""), 2, -1}), index(n);
  gpuruntime::IntColon::Invoker<double>()(nullptr, n, index.data(), 1, 1);
  gpuruntime::recipes::synchronise();
  gpuruntime::SortVector::Invoker<double>()(vector.data(), index.data(), n, false);
  print("descending", vector);
  print("were elements", index);
  std::printf("%s\n", gpuruntime::IsSortedVector::Invoker<double>()(vector.data(), n) ? "ascends" : "does not ascend");

  // Each column of 3 rows by itself. Keys 1 1 1 2 2 2 name the columns, the index counts rows: 1 2 3 1 2 3.
  const unsigned long rows = 3, columns = 2, size = rows * columns;
  DeviceArray<double> matrix(std::vector<double>{30, 10, 20, 5, 6, 4}, rows, columns), rowOf(size);
  DeviceArray<int> keys(size);
  gpuruntime::FillArrayWithRunningIndex::Invoker<int>()(nullptr, size, keys.data(), rows, columns);
  gpuruntime::FillArrayWithRunningIndex::Invoker<double>()(nullptr, size, rowOf.data(), 1, rows);
  gpuruntime::recipes::synchronise();
  gpuruntime::SortMatrix::Invoker<double>()(matrix.data(), rowOf.data(), keys.data(), size, true);
  print("columns ascending", matrix);
  print("were in rows", rowOf);

  // By magnitude, then by angle.
  DeviceArray<double2> complex(std::vector<double2>{{0, 2}, {-1, 0}, {1, 0}, {0, -2}});
  gpuruntime::SortVector::Invoker<double2>()(complex.data(), nullptr, 4, true);
  for (const double2 value : complex.toHost()) std::printf("(%g, %g) ", value.x, value.y);
  std::printf("\n");
}
