/// @file
/// The platform's own type names as they stand in exported signatures: vector types, the stream and the status.
///
/// They live in the global namespace under the names of the CUDA toolkit, so that a mangled name is the same for both
/// backends and for callers with and without the toolkit. Where the toolkit's headers are on the include path they are
/// used; elsewhere the same names are defined here with the same members, sizes and alignments.
#pragma once

// Types of signatures must be visible, or the functions that take them would be hidden with them.
#pragma GCC visibility push(default)

#if defined(__has_include) && __has_include(<vector_types.h>) && __has_include(<driver_types.h>)

#include <driver_types.h>
#include <vector_types.h>

#else

// clang-format off
struct alignas(2)  char2      { signed char x, y; };
struct alignas(2)  uchar2     { unsigned char x, y; };
struct alignas(4)  short2     { short x, y; };
struct alignas(4)  ushort2    { unsigned short x, y; };
struct alignas(8)  int2       { int x, y; };
struct alignas(8)  uint2      { unsigned int x, y; };
struct alignas(16) longlong2  { long long x, y; };
struct alignas(16) ulonglong2 { unsigned long long x, y; };
struct alignas(8)  float2     { float x, y; };
struct alignas(16) double2    { double x, y; };
// clang-format on

struct CUstream_st;
typedef CUstream_st* cudaStream_t;

enum cudaError {
  cudaSuccess = 0,
  cudaErrorInvalidValue = 1,
  cudaErrorMemoryAllocation = 2,
  cudaErrorInvalidConfiguration = 9,
  cudaErrorInvalidDevice = 101,
  cudaErrorNoKernelImageForDevice = 209,
  cudaErrorLaunchFailure = 719,
  cudaErrorUnknown = 999
};
typedef cudaError cudaError_t;

enum cudaMemcpyKind {
  cudaMemcpyHostToHost = 0,
  cudaMemcpyHostToDevice = 1,
  cudaMemcpyDeviceToHost = 2,
  cudaMemcpyDeviceToDevice = 3,
  cudaMemcpyDefault = 4
};

#endif

#pragma GCC visibility pop
