/// @file
/// What the counter-based generators share: the uniform sample, and the reading of a stream sample by sample.
#pragma once

#include "platform/platform.hpp"

namespace gpucommon::rand {

/// The uniform sample of 53 random bits: fma(bits, c, c), with c = 0x1.fffffffffffffp-54 just below 2^-53. From c to
/// 1 - 2^-53: neither 0 nor 1. bits + 1 is exact, so the product rounds once, as the fused operation does.
GPURUNTIME_HOST_DEVICE double uniformOf(unsigned long bits) {
  return gpuruntime::platform::exactDouble(bits + 1) * 0x1.fffffffffffffp-54;
}

namespace detail {

/// Writes `count` converted samples of the stream to consecutive places of `out`, and leaves the generator behind them.
///
/// A generator block is always converted whole, so that a value is the same whether or not its neighbours are wanted.
template <class Generator, class T, class Conversion>
GPURUNTIME_HOST_DEVICE void sampleAndAdvanceRange(Generator& generator, unsigned int& position, T* out,
                                                  unsigned long count, const Conversion& conversion) {
  constexpr unsigned int size = Generator::samplesPerBlock;
  while (count > 0) {
    double values[size];
    generator.uniformBlock(values);
    conversion(values);
    for (; position < size && count > 0; ++position, --count) *out++ = conversion.stored(values[position]);
    if (position == size) {
      position = 0;
      generator.advanceBlock();
    }
  }
}

}  // namespace detail
}  // namespace gpucommon::rand
