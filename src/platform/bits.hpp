/// @file
/// The bits of a double as an integer, and back.
#pragma once

#include <cstdint>
#include <cstring>

namespace gpuruntime::platform::detail {

GPURUNTIME_INLINE double doubleOf(std::uint64_t bits) {
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

GPURUNTIME_INLINE std::uint64_t bitsOf(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

}  // namespace gpuruntime::platform::detail
