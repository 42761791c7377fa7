// Moves elements from one shape to another: permutes, transposes, turns, repeats, diagonals and triangles.
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
  DeviceArray<int> A(2, 3), B(3, 3);
  gpuruntime::IntColon::Invoker<int>()(nullptr, 6, A.data(), 1, 1);
  gpuruntime::IntColon::Invoker<int>()(nullptr, 9, B.data(), 1, 1);
  print("A", A);

  DeviceArray<int> turned(3, 2);
  gpuruntime::Transpose::Invoker<int>()(nullptr, turned.data(), A.data(), 2, 3);
  print("Transpose", turned);
  gpuruntime::Rot90::Invoker<int>()(nullptr, turned.data(), A.data(), 2, 3, 1, true);
  print("Rot90, clockwise", turned);

  DeviceArray<int> repeated(2, 6);
  gpuruntime::RepmatMatrixRows::Invoker<int>()(nullptr, repeated.data(), A.data(), 2, 3, 2);
  print("RepmatMatrixRows, each column twice", repeated);
  gpuruntime::RepmatColumnVector::Invoker<int>()(nullptr, repeated.data(), A.data(), 6, 2);
  print("RepmatColumnVector, all of A twice", repeated);

  // A as two pages of 1 by 3, which trade places with the rows: C(i, j, k) = A(k, j, i).
  DeviceArray<int> C(1, 3, 2);
  const unsigned long size[] = {2, 3, 1}, order[] = {3, 2, 1}, permuted[] = {1, 3, 2};
  gpuruntime::Permute::Invoker<int>()(nullptr, C.data(), 3, permuted, A.data(), 3, size, 3, order);
  const auto c = C.toHost();
  std::printf("Permute, rows to pages\n%4d%4d%4d  and%4d%4d%4d\n", c[0], c[1], c[2], c[3], c[4], c[5]);

  // The diagonal above the main one, taken out, and put below it in zeros.
  DeviceArray<int> diagonal(2), D(3, 3);
  gpuruntime::DiagMatToVec::Invoker<int>()(nullptr, diagonal.data(), B.data(), 3, 1, 2);
  gpuruntime::GenericOnes::Invoker<int>()(nullptr, 9, D.data(), 0);
  gpuruntime::DiagVecToMat::Invoker<int>()(nullptr, D.data(), diagonal.data(), 3, -1, 2);
  print("B", B);
  print("diagonal 1 of B as diagonal -1", D);
  gpuruntime::TriLowerOneOnDiag::Invoker<int>()(nullptr, B.data(), B.data(), 0, 3, 3);
  print("TriLowerOneOnDiag of B, in place", B);
}
