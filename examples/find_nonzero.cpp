// Lists the elements of a matrix that are not 0: flag them, count on, read how many there are, and find them.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <vector>

int main() {
  using gpuruntime::recipes::DeviceArray;
  const unsigned long rows = 2, columns = 3, n = rows * columns;
  const DeviceArray<float> matrix(std::vector<float>{0, 5, 0, 7, 9, 0}, rows, columns);

  // 0 1 0 1 1 0, and from it the running count 0 1 1 2 3 3, in place.
  DeviceArray<double> prefix(n), total(1);
  gpuruntime::FlagNonZero::Invoker<float>()(nullptr, prefix.data(), matrix.data(), n);
  gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), prefix.data(), n, n, 1);

  // The one number that the host needs: how long the list is.
  const auto found = static_cast<unsigned long>(total.toHost()[0]);

  DeviceArray<double> rowOf(found), columnOf(found);
  DeviceArray<float> values(found);
  gpuruntime::Find2DWithValue::Invoker<float>()(nullptr, rowOf.data(), columnOf.data(), values.data(), matrix.data(),
                                                prefix.data(), found, rows, columns, gpuruntime::FindFirstLast::first);
  const auto r = rowOf.toHost(), c = columnOf.toHost();
  const auto v = values.toHost();
  for (unsigned long i = 0; i < found; ++i) std::printf("row %g, column %g: %g\n", r[i], c[i], v[i]);

  // The last one alone, as a linear index.
  DeviceArray<double> last(1);
  gpuruntime::Find1D::Invoker<float>()(nullptr, last.data(), matrix.data(), prefix.data(), 1, n,
                                       gpuruntime::FindFirstLast::last);
  std::printf("the last is element %g\n", last.toHost()[0]);
}
