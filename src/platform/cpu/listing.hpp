/// @file
/// The numbers of those threads of a run that answer yes.
#pragma once

#include "qualifiers.hpp"

#if defined(__AVX512VBMI2__)
#include <immintrin.h>
#endif

namespace gpuruntime::platform::detail {

/// Threads whose numbers fit a byte.
inline constexpr unsigned long listedAtOnce = 256;

/// A byte for each thread, with room for one vector behind.
using Numbers = unsigned char[listedAtOnce + 64];

/// Lists the numbers of the threads whose answer is 1, not 0, and returns how many. No branch depends on an answer,
/// for they need follow no pattern.
GPURUNTIME_INLINE unsigned long listAnswered(Numbers& listed, const Numbers& answers, unsigned long threads) {
  unsigned long count = 0, i = 0;
#if defined(__AVX512VBMI2__)
  alignas(64) static constexpr unsigned char ascending[64] = {
      0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21,
      22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43,
      44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63};
  __m512i numbers = _mm512_load_si512(ascending);
  for (; i + 64 <= threads; i += 64) {
    const __m512i some = _mm512_loadu_si512(answers + i);
    const __mmask64 chosen = _mm512_test_epi8_mask(some, some);
    _mm512_storeu_si512(listed + count, _mm512_maskz_compress_epi8(chosen, numbers));
    count += static_cast<unsigned long>(__builtin_popcountl(chosen));
    numbers = _mm512_add_epi8(numbers, _mm512_set1_epi8(64));
  }
#endif
  for (; i < threads; ++i) {
    listed[count] = static_cast<unsigned char>(i);
    count += answers[i];
  }
  return count;
}

}  // namespace gpuruntime::platform::detail
