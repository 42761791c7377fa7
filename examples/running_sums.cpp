// Running sums of a vector in chunks, which more blocks scan at once, and of the rows of a matrix.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <vector>

namespace {

using gpuruntime::recipes::DeviceArray;

void print(const char* name, const DeviceArray<double>& values) {
  std::printf("%-24s", name);
  for (const double value : values.toHost()) std::printf(" %3g", value);
  std::printf("\n");
}

}  // namespace

int main() {
  // 1 to 12 in K = 3 chunks of L = 4.
  const unsigned long N = 12, L = 4, K = N / L, S = 1;
  DeviceArray<double> data(N), totals(K), total(1);
  gpuruntime::IntColon::Invoker<double>()(nullptr, N, data.data(), 1, 1);

  const gpuruntime::CumSum::Invoker<double> scan;
  scan(nullptr, totals.data(), data.data(), N, L, S);
  print("each chunk by itself", data);
  print("totals of the chunks", totals);
  scan(nullptr, total.data(), totals.data(), K, K, S);
  print("running totals", totals);
  gpuruntime::CumSumAdjust::Invoker<double>()(nullptr, totals.data(), data.data(), N, L, K, S);
  print("joined", data);

  // Products along the rows of [1 2 3; 4 5 6]: rows of memory have S = 2 elements, and there are L = 3 of them.
  DeviceArray<double> matrix(std::vector<double>{1, 4, 2, 5, 3, 6}, 2, 3), ends(2);
  gpuruntime::CumProd::Invoker<double>()(nullptr, ends.data(), matrix.data(), 6, 3, 2);
  print("products along rows", matrix);
  print("the last of each row", ends);
}
