#include "bench.hpp"

#include <gpuruntime/recipes/memory.hpp>

#include <algorithm>
#include <chrono>
#include <vector>

namespace benchsupport {
namespace {

constexpr unsigned long bytes = largeCount * 8;

template <class Call>
double medianSeconds(Call call) {
  using Clock = std::chrono::steady_clock;
  call();
  gpuruntime::recipes::synchronise();
  std::vector<double> seconds(9);
  for (double& entry : seconds) {
    const Clock::time_point start = Clock::now();
    call();
    gpuruntime::recipes::synchronise();
    entry = std::chrono::duration<double>(Clock::now() - start).count();
  }
  std::nth_element(seconds.begin(), seconds.begin() + 4, seconds.end());
  return seconds[4];
}

}  // namespace

double fillBandwidth() {
  static const double bandwidth = [] {
    DeviceArray<unsigned char> array(bytes);
    return bytes / medianSeconds([&] { gpuruntime::recipes::fillOnDevice(array.data(), 0, bytes); });
  }();
  return bandwidth;
}

double copyBandwidth() {
  static const double bandwidth = [] {
    DeviceArray<unsigned char> from(bytes), to(bytes);
    gpuruntime::recipes::fillOnDevice(from.data(), 1, bytes);
    return 2 * bytes / medianSeconds([&] { gpuruntime::recipes::copyOnDevice(to.data(), from.data(), bytes); });
  }();
  return bandwidth;
}

double readBandwidth() {
  static const double bandwidth = [] {
    DeviceArray<double> array(largeCount);
    gpuruntime::recipes::fillOnDevice(array.data(), 0, bytes);
    return bytes / medianSeconds([&] { gpuruntime::CheckNaN::Invoker<double>()(nullptr, array.data(), largeCount); });
  }();
  return bandwidth;
}

}  // namespace benchsupport
