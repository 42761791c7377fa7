// Reads and writes parts of a matrix by lists and ranges of indices, after a check of the subscripts.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <vector>

namespace {

using gpuruntime::recipes::DeviceArray;

void print(const char* name, const DeviceArray<int>& matrix) {
  const auto values = matrix.toHost();
  std::printf("%s\n", name);
  for (unsigned long r = 0; r < matrix.extent(0); ++r) {
    for (unsigned long c = 0; c < matrix.extent(1); ++c) std::printf("%4d", values[c * matrix.extent(0) + r]);
    std::printf("\n");
  }
}

}  // namespace

int main() {
  DeviceArray<int> A(3, 4);
  gpuruntime::IntColon::Invoker<int>()(nullptr, 12, A.data(), 1, 1);

  // Are the columns 4 and 1 there? Whole numbers from 1, and no larger than 4.
  const DeviceArray<double> list(std::vector<double>{4, 1});
  const auto [valid, largest] = gpuruntime::CheckValidFindMax::Invoker<double>()(list.data(), 2);
  if (!valid || largest > 4) return 1;

  // B = A(3:-1:1, [4 1]). A range is passed by value: first index and step.
  const double2 backwards{3, -1};
  DeviceArray<int> B(3, 2);
  gpuruntime::Subsref3D<double2, const double*, void*>::Invoker<int>()(nullptr, 6, B.data(), A.data(), 3, 3, backwards,
                                                                       4, 2, list.data(), 1, 1, nullptr);
  print("A(3:-1:1, [4 1])", B);

  // A(2, :) = 0. The whole dimension is the range from 1 in steps of 1.
  const double2 second{2, 1}, all{1, 1};
  gpuruntime::SubsasgnScalar3D<double2, double2, void*>::Invoker<int>()(nullptr, 4, A.data(), 0, 3, 1, second, 4, 4,
                                                                        all, 1, 1, nullptr);
  print("A, with A(2, :) = 0", A);

  // Linear indices of (1, 1), (3, 4) and (4, 2): the last has no place, which the error word says.
  const DeviceArray<double> rows(std::vector<double>{1, 3, 4}), columns(std::vector<double>{1, 4, 2});
  DeviceArray<double> linear(3);
  gpuruntime::Sub2Ind2DChecked::Invoker<double>()(nullptr, 3, linear.data(), rows.data(), columns.data(), 3, 4);
  const unsigned int word = gpuruntime::Sub2Ind2DChecked().getErrorFlag(nullptr);
  std::printf("%g %g: %s\n", linear.toHost()[0], linear.toHost()[1],
              word == 1000 ? "all there" : "a subscript is out of range");
}
