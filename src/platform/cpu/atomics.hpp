/// @file
/// Atomic operations on the words that kernels share, and the read-only load.
#pragma once

#include "qualifiers.hpp"

namespace gpuruntime::platform {

GPURUNTIME_DEVICE unsigned int atomicCAS(unsigned int* word, unsigned int expected, unsigned int desired) {
  __atomic_compare_exchange_n(word, &expected, desired, false, __ATOMIC_RELAXED, __ATOMIC_RELAXED);
  return expected;
}
GPURUNTIME_DEVICE unsigned int atomicOr(unsigned int* word, unsigned int bits) {
  return __atomic_fetch_or(word, bits, __ATOMIC_RELAXED);
}
GPURUNTIME_DEVICE unsigned int atomicAnd(unsigned int* word, unsigned int bits) {
  return __atomic_fetch_and(word, bits, __ATOMIC_RELAXED);
}

template <class T>
GPURUNTIME_DEVICE T readOnlyLoad(const T* pointer) {
  return *pointer;
}

}  // namespace gpuruntime::platform
