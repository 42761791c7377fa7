// Smooths two signals by a recursive filter, at once and in two pieces, and takes differences of the result.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <vector>

namespace {

using gpuruntime::recipes::DeviceArray;

void print(const char* name, const DeviceArray<double>& matrix) {
  const auto values = matrix.toHost();
  std::printf("%s\n", name);
  for (unsigned long c = 0; c < matrix.extent(1); ++c) {
    for (unsigned long r = 0; r < matrix.extent(0); ++r) std::printf(" %8g", values[c * matrix.extent(0) + r]);
    std::printf("\n");
  }
}

}  // namespace

int main() {
  // y(t) = x(t) / 2 + y(t - 1) / 2, on two columns of four samples: a step and an impulse.
  using First = mpl_::integral_c<int, 1>;
  const gpuruntime::IIRFilter::Invoker<double, First> filter;
  const DeviceArray<double> b(std::vector<double>{0.5}), a(std::vector<double>{1, -0.5});
  const DeviceArray<double> x(std::vector<double>{1, 1, 1, 1, 1, 0, 0, 0}, 4, 2);

  DeviceArray<double> y(4, 2), state(1, 2);
  filter(nullptr, y.data(), nullptr, b.data(), a.data(), x.data(), nullptr, 1, 2, 4, 2, 1, 1, 0);
  print("filtered at once", y);

  // The first two samples, then the others from the states that were left. The columns are pieces of their own here.
  const DeviceArray<double> first(std::vector<double>{1, 1, 1, 0}, 2, 2), second(std::vector<double>{1, 1, 0, 0}, 2, 2);
  DeviceArray<double> piece(2, 2);
  filter(nullptr, piece.data(), state.data(), b.data(), a.data(), first.data(), nullptr, 1, 2, 2, 2, 1, 1, 0);
  print("first piece", piece);
  print("states", state);
  filter(nullptr, piece.data(), state.data(), b.data(), a.data(), second.data(), state.data(), 1, 2, 2, 2, 1, 1, 0);
  print("second piece", piece);

  // Differences down the columns: three of four samples each.
  DeviceArray<double> differences(3, 2);
  gpuruntime::Diff::Invoker<double>()(nullptr, differences.data(), y.data(), 1, 3, 6);
  print("differences", differences);
}
