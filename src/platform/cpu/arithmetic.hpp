/// @file
/// Device arithmetic by plain operators and the C library. The build turns contraction off, so that only `fma` fuses.
#pragma once

#include "qualifiers.hpp"

#include <math.h>

namespace gpuruntime::platform {

// NOLINTBEGIN(bugprone-reserved-identifier): the platform's names.
GPURUNTIME_DEVICE double __dmul_rn(double a, double b) {
  return a * b;
}
GPURUNTIME_DEVICE double __dadd_rn(double a, double b) {
  return a + b;
}
// NOLINTEND(bugprone-reserved-identifier)

GPURUNTIME_DEVICE void sincos(double x, double* sine, double* cosine) {
  ::sincos(x, sine, cosine);
}
GPURUNTIME_DEVICE void sincos(float x, float* sine, float* cosine) {
  ::sincosf(x, sine, cosine);
}

}  // namespace gpuruntime::platform
