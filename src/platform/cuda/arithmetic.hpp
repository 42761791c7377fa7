/// @file
/// Atomics, loads and device arithmetic of the cuda backend. Arithmetic works on the host too, where tests call it.
#pragma once

#include <cuda_runtime.h>

#include <cmath>

namespace gpuruntime::platform {

__host__ __device__ inline unsigned int atomicCAS(unsigned int* word, unsigned int expected, unsigned int desired) {
#ifdef __CUDA_ARCH__
  return ::atomicCAS(word, expected, desired);
#else
  const unsigned int old = *word;
  if (old == expected) *word = desired;
  return old;
#endif
}
__device__ inline unsigned int atomicOr(unsigned int* word, unsigned int bits) {
  return ::atomicOr(word, bits);
}
__device__ inline unsigned int atomicAnd(unsigned int* word, unsigned int bits) {
  return ::atomicAnd(word, bits);
}

template <class T>
__device__ T readOnlyLoad(const T* pointer) {
  return __ldg(pointer);
}

// Contraction is off in device code by the build's flags, and in host code too: plain operators are rounded one by one.
__host__ __device__ inline double __dmul_rn(double a, double b) {
  return a * b;
}
__host__ __device__ inline double __dadd_rn(double a, double b) {
  return a + b;
}
__host__ __device__ inline void sincos(double x, double* sine, double* cosine) {
  ::sincos(x, sine, cosine);
}
__host__ __device__ inline void sincos(float x, float* sine, float* cosine) {
  ::sincosf(x, sine, cosine);
}

__host__ __device__ inline double exactDouble(unsigned long x) {
  return static_cast<double>(x);
}
__host__ __device__ inline double exactMinusProduct(double x, double a, double b) {
  return ::fma(-a, b, x);
}
__host__ __device__ inline double logOfNormal(double x) {
  return ::log(x);
}
__host__ __device__ inline void sincosOfTurn(double x, double* sine, double* cosine) {
#ifdef __CUDA_ARCH__
  // In these words the compiler sees that the reduction of huge arguments, which needs a stack frame, is not reached.
  __builtin_assume(!(fabs(x) >= 2147483648.0));
#endif
  ::sincos(x, sine, cosine);
}
__host__ __device__ inline double erfcinv(double x) {
  return ::erfcinv(x);
}
template <class Block, unsigned int N>
__device__ void erfcinvOfEach(const Block& block, Live, PerThread<double, N>& values) {
  block.forEachThread([&](Thread thread) { values[thread] = ::erfcinv(values[thread]); });
}

}  // namespace gpuruntime::platform
