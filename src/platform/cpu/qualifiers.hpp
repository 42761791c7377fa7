/// @file
/// Qualifiers of device code: plain inline functions and static storage.
#pragma once

#define GPURUNTIME_DEVICE inline
#define GPURUNTIME_HOST_DEVICE inline

#define GPURUNTIME_DEVICE_SYMBOL(T, name) \
  static T name {}
#define GPURUNTIME_CONSTANT_SYMBOL(T, name) \
  static T name {}
#define GPURUNTIME_CONSTANT_TABLE(T, name, ...) static constexpr T name = __VA_ARGS__
#define GPURUNTIME_TABLE(name) name
#define GPURUNTIME_SHARED(T, name) alignas(64) T name

// Iterations of the loop behind it do not depend on each other; or are many and short.
#if defined(__clang__)
#define GPURUNTIME_SIMD _Pragma("clang loop vectorize(assume_safety)")
#define GPURUNTIME_UNROLL _Pragma("clang loop unroll_count(8)")
#else
#define GPURUNTIME_SIMD _Pragma("GCC ivdep")
#define GPURUNTIME_UNROLL _Pragma("GCC unroll 8")
#endif

#define GPURUNTIME_INLINE inline __attribute__((always_inline))
#define GPURUNTIME_CALLED inline
#define GPURUNTIME_INLINE_LAMBDA __attribute__((always_inline))

namespace gpuruntime::platform::detail {

#if defined(__AVX512BW__)
inline constexpr unsigned int vectorBytes = 64;
#elif defined(__AVX2__)
inline constexpr unsigned int vectorBytes = 32;
#else
inline constexpr unsigned int vectorBytes = 16;
#endif

}  // namespace gpuruntime::platform::detail

#include "../polar.hpp"
#include "../power.hpp"
#include "../unrolled.hpp"
