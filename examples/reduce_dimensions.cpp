// Sums, extremes and flags along each dimension of an array of three.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using gpuruntime::recipes::DeviceArray;

template <class T>
void print(const char* name, const DeviceArray<T>& results) {
  std::printf("%-32s", name);
  for (const T value : results.toHost()) std::printf(" %4g", static_cast<double>(value));
  std::printf("\n");
}

}  // namespace

int main() {
  // 2 rows, 3 columns, 2 pages: 1 to 12 in the order of memory.
  const unsigned long rows = 2, columns = 3, pages = 2, N = rows * columns * pages;
  DeviceArray<int> A(rows, columns, pages);
  gpuruntime::IntColon::Invoker<int>()(nullptr, N, A.data(), 1, 1);

  const gpuruntime::SumNative::Invoker<int> sum;
  DeviceArray<int> ofColumns(columns, pages), ofRows(rows, pages), ofPages(rows, columns), ofAll(1);
  sum(nullptr, ofColumns.data(), A.data(), N, rows, 1);
  sum(nullptr, ofRows.data(), A.data(), N, columns, rows);
  sum(nullptr, ofPages.data(), A.data(), N, pages, rows * columns);
  sum(nullptr, ofAll.data(), A.data(), N, N, 1);
  print("sums along dimension 1", ofColumns);
  print("sums along dimension 2", ofRows);
  print("sums along dimension 3", ofPages);
  print("sum of all", ofAll);

  // What is clamped on the way does not come back; in double nothing is clamped.
  const DeviceArray<signed char> bytes(std::vector<signed char>{127, 1, -1, 5});
  DeviceArray<signed char> clamped(1);
  DeviceArray<double> wide(1);
  gpuruntime::SumNative::Invoker<signed char>()(nullptr, clamped.data(), bytes.data(), 4, 4, 1);
  gpuruntime::SumAsDouble::Invoker<signed char>()(nullptr, wide.data(), bytes.data(), 4, 4, 1);
  print("127 + 1 - 1 + 5 as signed char", clamped);
  print("127 + 1 - 1 + 5 as double", wide);

  // The greatest of each row of [2 7 NaN; 4 1 4], and its column: NaN counts only where there is nothing else.
  const DeviceArray<double> B(std::vector<double>{2, 4, 7, 1, std::nan(""), 4}, 2, 3);
  DeviceArray<double> greatest(2), column(2);
  gpuruntime::MaxWithIndex::Invoker<double>()(nullptr, greatest.data(), column.data(), B.data(), 6, 3, 1, 2);
  print("greatest of each row", greatest);
  print("its column", column);

  // A row with a NaN is all true, since NaN is not 0; Any does not take it for true.
  DeviceArray<bool> flags(2), someNaN(1);
  gpuruntime::All::Invoker<double>()(nullptr, flags.data(), B.data(), 6, 3, 2);
  gpuruntime::HasNaN::Invoker<double>()(nullptr, someNaN.data(), B.data(), 6, 6);
  print("rows without a 0", flags);
  print("a NaN somewhere", someNaN);
}
