// Powers, roots and quotients: the lengths of the columns of a matrix, a matrix power, and a check before them.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <vector>

int main() {
  using gpuruntime::recipes::DeviceArray;
  const unsigned long rows = 2, columns = 3, n = rows * columns;
  const DeviceArray<float> matrix(std::vector<float>{3, -4, 0, 0, 1e30F, 0}, rows, columns);
  if (gpuruntime::CheckNotFinite::Invoker<float>()(nullptr, matrix.data(), n)) return 1;

  // Squares, their sums down the columns, roots. In double, in which the square of 1e30 is finite.
  DeviceArray<double> wide(rows, columns), sums(columns), lengths(columns);
  gpuruntime::CastToReal::Invoker<double, float>()(nullptr, n, wide.data(), matrix.data());
  gpuruntime::AbsPower::Invoker<double>()(nullptr, wide.data(), wide.data(), 2, n);
  gpuruntime::SumNative::Invoker<double>()(nullptr, sums.data(), wide.data(), n, rows, 1);
  gpuruntime::AbsPower::Invoker<double>()(nullptr, lengths.data(), sums.data(), 0.5, columns);
  const auto length = lengths.toHost();
  std::printf("lengths: %g %g %g\n", length[0], length[1], length[2]);

  // [2 1; 1 2] has the eigenvalues 3 and 1, and the eigenvectors V = [1 1; 1 -1], whose inverse is V / 2. So its fourth
  // power, [41 40; 40 41], is V * diag(3^4, 1^4) / 2 times V. All but that last product is made here.
  DeviceArray<double> V(std::vector<double>{1, 1, 1, -1}, 2, 2);
  const DeviceArray<double> eigenvalues(std::vector<double>{3, 1});
  gpuruntime::MPowerMatrixScalar::Invoker<double>()(nullptr, V.data(), V.data(), eigenvalues.data(), 4, 2);
  gpuruntime::ScaleInplace::Invoker<double>()(nullptr, V.data(), 2, 4);
  const auto left = V.toHost();
  std::printf("%5g %5g\n%5g %5g\n", left[0], left[2], left[1], left[3]);
}
