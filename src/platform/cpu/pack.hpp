/// @file
/// Packs: as many threads side by side as a machine vector has 64-bit lanes. For integer steps that the compiler does
/// not vectorise well by itself: it does not see that a product of 32-bit words is one instruction in 64-bit lanes.
#pragma once

#include "block.hpp"
#include "qualifiers.hpp"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace gpuruntime::platform {

/// A 32-bit word of each thread of a pack: the lower half of its lane. The upper half holds anything.
using Words = LongWords;

GPURUNTIME_INLINE Words narrowed(LongWords words) {
  return words;
}
GPURUNTIME_INLINE LongWords widened(Words words) {
  return words & 0xFFFFFFFFUL;
}

/// The lower half of `a * b`; its upper half goes to `upper`.
GPURUNTIME_INLINE Words mulhilo(Words a, unsigned int b, Words* upper) {
#if defined(__AVX512BW__)
  const auto product = reinterpret_cast<LongWords>(
      _mm512_maskz_mul_epu32(0xFF, reinterpret_cast<__m512i>(a), _mm512_set1_epi64(static_cast<long>(b))));
#elif defined(__AVX2__)
  const auto product = reinterpret_cast<LongWords>(
      _mm256_mul_epu32(reinterpret_cast<__m256i>(a), _mm256_set1_epi64x(static_cast<long>(b))));
#elif defined(__SSE2__)
  const auto product =
      reinterpret_cast<LongWords>(_mm_mul_epu32(reinterpret_cast<__m128i>(a), _mm_set1_epi64x(static_cast<long>(b))));
#else
  const LongWords product = widened(a) * static_cast<unsigned long>(b);
#endif
  *upper = product >> 32;
  return product;
}

}  // namespace gpuruntime::platform
