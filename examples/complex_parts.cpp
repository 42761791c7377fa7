// Joins two real arrays into a complex matrix, conjugates it, takes it apart and pads it.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <vector>

namespace {

using gpuruntime::recipes::DeviceArray;

void print(const char* name, const DeviceArray<double2>& matrix) {
  const auto values = matrix.toHost();
  std::printf("%s\n", name);
  for (unsigned long r = 0; r < matrix.extent(0); ++r) {
    for (unsigned long c = 0; c < matrix.extent(1); ++c) {
      const double2 value = values[c * matrix.extent(0) + r];
      std::printf("  (%g, %g)", value.x, value.y);
    }
    std::printf("\n");
  }
}

}  // namespace

int main() {
  const DeviceArray<double> real(std::vector<double>{3, 1, 0, 5}), imaginary(std::vector<double>{4, 0, 2, -12});
  DeviceArray<double2> z(2, 2);
  gpuruntime::ComplexifyPtrPtr::Invoker<double>()(nullptr, z.data(), real.data(), imaginary.data(), 4);
  print("joined", z);

  // In place. The sign bit flips, so that the 0 becomes -0.
  gpuruntime::Conj::Invoker<double2>()(nullptr, z.data(), z.data(), 4);
  print("conjugated", z);

  // How many elements are not real? The count takes -0 for 0.
  DeviceArray<double> part(4), count(1), magnitude(4);
  gpuruntime::Imag::Invoker<double2>()(nullptr, part.data(), z.data(), 4);
  gpuruntime::CountNonZero::Invoker<double>()(nullptr, count.data(), part.data(), 4, 4);
  gpuruntime::Abs::Invoker<double2>()(nullptr, magnitude.data(), z.data(), 4);
  const auto m = magnitude.toHost();
  std::printf("%g not real; magnitudes %g %g %g %g\n", count.toHost()[0], m[0], m[1], m[2], m[3]);

  // More rows, fewer columns.
  DeviceArray<double2> padded(3, 1);
  gpuruntime::ComplexCopyPad::Invoker<double2>()(nullptr, padded.data(), 3, 1, z.data(), 2, 2);
  print("padded and cut to 3 by 1", padded);
}
