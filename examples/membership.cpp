// Asks which elements of A occur in B, and where: sort B with its positions, then search it.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cmath>
#include <cstdio>
#include <vector>

int main() {
  using gpuruntime::recipes::DeviceArray;
  const std::vector<double> wanted{2, NAN, 5, -0.0};
  const DeviceArray<double> A(wanted);
  DeviceArray<double> B(std::vector<double>{7, 2, NAN, 2, 0}), indexB(5);

  // 1 2 3 4 5 move with the elements of B: sorted, 0 2 2 7 NaN were elements 5 2 4 1 3.
  gpuruntime::IntColon::Invoker<double>()(nullptr, 5, indexB.data(), 1, 1);
  gpuruntime::recipes::synchronise();
  gpuruntime::SortVector::Invoker<double>()(B.data(), indexB.data(), 5, true);

  DeviceArray<bool> member(wanted.size());
  DeviceArray<double> location(wanted.size());
  gpuruntime::IsMember2Arg::Invoker<double>()(nullptr, A.data(), wanted.size(), B.data(), 5, indexB.data(),
                                              member.data(), location.data());
  const auto isMember = member.toHost();
  const auto at = location.toHost();
  for (unsigned long i = 0; i < wanted.size(); ++i) {
    if (isMember[i]) {
      std::printf("%g is element %g of B\n", wanted[i], at[i]);
    } else {
      std::printf("%g is not in B\n", std::abs(wanted[i]));
    }
  }
}
