// Converts an array, compares it with where it came from, and asks whether a conversion to bool met a NaN.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cstdio>
#include <limits>
#include <vector>

int main() {
  using gpuruntime::recipes::DeviceArray;
  const std::vector<double> values{2.5, -2.5, 7, 300, std::numeric_limits<double>::quiet_NaN()};
  const unsigned long n = values.size();
  DeviceArray<double> source(n);
  source.copyFrom(values.data(), n);

  // To bytes: halves go away from zero, what is out of range stops at its end, NaN becomes 0.
  DeviceArray<signed char> bytes(n);
  gpuruntime::CastToReal::Invoker<signed char, double>()(nullptr, n, bytes.data(), source.data());

  // Which elements are still the same? Of different types, both sides are compared as doubles.
  DeviceArray<bool> same(n);
  gpuruntime::ElementwiseCompare::Invoker<double, signed char>()(nullptr, n, same.data(), source.data(), bytes.data(),
                                                                 false);

  // To bool: NaN counts as true, and the error word tells that there was one.
  DeviceArray<bool> logical(n);
  gpuruntime::CastToBool::Invoker<double>()(nullptr, n, logical.data(), source.data());
  const unsigned int word = gpuruntime::CastToBool().getErrorFlag(nullptr);

  const auto byteValues = bytes.toHost();
  const auto sameValues = same.toHost();
  for (unsigned long i = 0; i < n; ++i) {
    std::printf("%g becomes %d, %s\n", values[i], byteValues[i], sameValues[i] ? "the same" : "another value");
  }
  std::printf("%s\n", word == 1023 ? "a NaN was taken for true" : "no NaN");
}
