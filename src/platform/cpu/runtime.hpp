/// @file
/// The runtime calls of the cpu backend, under their platform names and answered by the device model. Device memory is
/// ordinary memory, a launch is over when it returns, and a stream is an ordering promise that this keeps.
#pragma once

#include <gpuruntime/platformtypes.hpp>

#include "../extent.hpp"

#include <cstddef>

namespace gpuruntime::platform {

struct cudaDeviceProp {
  int maxThreadsPerBlock;
  int maxThreadsDim[3];
  int maxGridSize[3];
  int multiProcessorCount;
  int major;
  int minor;
};

struct cudaFuncAttributes {
  int maxThreadsPerBlock;
};

cudaError cudaGetDevice(int* device);
cudaError cudaGetDeviceProperties(cudaDeviceProp* properties, int device);
const char* cudaGetErrorString(cudaError status);
cudaError cudaMemcpyAsync(void* destination, const void* source, std::size_t bytes, cudaMemcpyKind kind,
                          CUstream_st* stream);
cudaError cudaStreamSynchronize(CUstream_st* stream);

namespace detail {
cudaError functionAttributes(cudaFuncAttributes* attributes, const void* kernel);
cudaError beginLaunch(const void* kernel, Extent grid, Extent shape, CUstream_st* stream);
// `room` is what the symbol holds behind its offset.
cudaError copyToSymbol(void* symbol, std::size_t room, const void* source, std::size_t bytes);
cudaError copyFromSymbol(void* destination, const void* symbol, std::size_t room, std::size_t bytes);
}  // namespace detail

template <class T>
cudaError cudaMemcpyToSymbolAsync(T& symbol, const void* source, std::size_t bytes, std::size_t offset, cudaMemcpyKind,
                                  CUstream_st*) {
  return detail::copyToSymbol(reinterpret_cast<char*>(&symbol) + offset, sizeof(T) - offset, source, bytes);
}

template <class T>
cudaError cudaMemcpyToSymbol(T& symbol, const void* source, std::size_t bytes, std::size_t offset = 0,
                             cudaMemcpyKind = cudaMemcpyHostToDevice) {
  return detail::copyToSymbol(reinterpret_cast<char*>(&symbol) + offset, sizeof(T) - offset, source, bytes);
}

template <class T>
cudaError cudaMemcpyFromSymbolAsync(void* destination, const T& symbol, std::size_t bytes, std::size_t offset,
                                    cudaMemcpyKind, CUstream_st*) {
  return detail::copyFromSymbol(destination, reinterpret_cast<const char*>(&symbol) + offset, sizeof(T) - offset,
                                bytes);
}

template <class T>
cudaError cudaMemcpyFromSymbol(void* destination, const T& symbol, std::size_t bytes) {
  return detail::copyFromSymbol(destination, &symbol, sizeof(T), bytes);
}

}  // namespace gpuruntime::platform
