/// @file
/// Qualifiers of device code: plain inline functions and static storage.
#pragma once

#define GPURUNTIME_DEVICE inline
#define GPURUNTIME_HOST_DEVICE inline

#define GPURUNTIME_DEVICE_SYMBOL(T, name) \
  static T name {}
#define GPURUNTIME_CONSTANT_SYMBOL(T, name) \
  static T name {}
#define GPURUNTIME_SHARED(T, name) alignas(64) T name

// Iterations of the loop behind it do not depend on each other.
#if defined(__clang__)
#define GPURUNTIME_SIMD _Pragma("clang loop vectorize(assume_safety)")
#else
#define GPURUNTIME_SIMD _Pragma("GCC ivdep")
#endif

#define GPURUNTIME_INLINE inline __attribute__((always_inline))
