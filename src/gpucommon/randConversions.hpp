/// @file
/// Conversions of uniform samples: `conversion(samples)` replaces those of a generator block, in double, and `stored`
/// rounds one for the output.
#pragma once

#include <cmath>

#include "gpucommon/hostDeviceCast.hpp"
#include "platform/platform.hpp"

namespace gpucommon::rand {

/// The sample itself.
template <class T>
struct RandConversion {
  template <unsigned int S>
  GPURUNTIME_HOST_DEVICE void operator()(double (&)[S]) const {}
  GPURUNTIME_HOST_DEVICE T stored(double value) const { return castNumeric<T, double>(value); }
};

/// An integer of a range.
template <class T>
struct RandIConversion {
  double base;   ///< lo
  double range;  ///< hi - lo + 1

  template <unsigned int S>
  GPURUNTIME_HOST_DEVICE void operator()(double (&samples)[S]) const {
    gpuruntime::platform::unrolled<S>([&](auto i) { samples[i] = base + std::floor(range * samples[i]); });
  }
  GPURUNTIME_HOST_DEVICE T stored(double value) const { return castNumeric<T, double>(value); }
};

/// Two normal values of each pair.
template <class T>
struct NormalConversionBoxMuller {
  template <unsigned int S>
  GPURUNTIME_HOST_DEVICE void operator()(double (&samples)[S]) const {
    static_assert(S % 2 == 0, "samples come in pairs");
    gpuruntime::platform::unrolled<S / 2>([&](auto pair) {
      double &first = samples[2 * pair], &second = samples[2 * pair + 1];
      const double radius = std::sqrt(-2.0 * gpuruntime::platform::logOfNormal(first));
      double sine, cosine;
      gpuruntime::platform::sincosOfTurn(0x1.921fb54442d18p+2 * second, &sine, &cosine);
      first = radius * cosine;
      second = radius * sine;
    });
  }
  GPURUNTIME_HOST_DEVICE T stored(double value) const { return castNumeric<T, double>(value); }
};

/// A normal value of each sample.
template <class T>
struct NormalConversionInversion {
  template <unsigned int S>
  GPURUNTIME_HOST_DEVICE void operator()(double (&samples)[S]) const {
    for (double& u : samples) u = afterInverse(gpuruntime::platform::erfcinv(beforeInverse(u)));
  }
  // What stands on both sides of erfcinv, for who takes it for a whole block.
  GPURUNTIME_HOST_DEVICE double beforeInverse(double u) const { return 2.0 * u; }
  GPURUNTIME_HOST_DEVICE double afterInverse(double value) const { return -0x1.6a09e667f3bcdp+0 * value; }
  GPURUNTIME_HOST_DEVICE T stored(double value) const { return castNumeric<T, double>(value); }
};

}  // namespace gpucommon::rand
