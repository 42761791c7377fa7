// firstcall COUNT: nanoseconds of the first call of a family in this process, and of the second, on COUNT elements.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

int main(int, char** arguments) {
  using Clock = std::chrono::steady_clock;
  const unsigned long count = std::strtoul(arguments[1], nullptr, 10);
  gpuruntime::recipes::DeviceArray<double> out(count);
  // In pieces that are too small to start workers.
  for (unsigned long i = 0; i < count; i += 512) {
    gpuruntime::recipes::fillOnDevice(out.data() + i, 0, sizeof(double) * std::min(512UL, count - i));
  }
  gpuruntime::recipes::synchronise();
  for (int call = 0; call < 2; ++call) {
    const Clock::time_point start = Clock::now();
    gpuruntime::IntColon::Invoker<double>()(nullptr, count, out.data(), 0, 1);
    gpuruntime::recipes::synchronise();
    std::printf("%.0f\n", std::chrono::duration<double, std::nano>(Clock::now() - start).count());
  }
}
