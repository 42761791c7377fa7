// The recipes over the CUDA runtime.
#include <gpuruntime/recipes/memory.hpp>

#include <cuda_runtime_api.h>

#include <new>
#include <stdexcept>

namespace gpuruntime::recipes {
namespace {

// The runtime keeps a failure for the next one who asks. It is taken out here, so that the caller hears of it once.
void throwOnFailure(cudaError status, const char* what) {
  if (status == cudaSuccess) return;
  cudaGetLastError();
  throw std::runtime_error(std::string(what) + ": " + cudaGetErrorString(status));
}

void copy(void* destination, const void* source, std::size_t bytes, cudaMemcpyKind kind, CUstream_st* stream) {
  if (bytes != 0) throwOnFailure(cudaMemcpyAsync(destination, source, bytes, kind, stream), "copy");
}

}  // namespace

void* allocate(std::size_t bytes) {
  void* memory = nullptr;
  if (bytes == 0) return memory;
  const cudaError status = cudaMalloc(&memory, bytes);
  if (status == cudaErrorMemoryAllocation) {
    cudaGetLastError();
    throw std::bad_alloc();
  }
  throwOnFailure(status, "allocation of device memory");
  return memory;
}

// A failure of the two that give back is an earlier one's, which synchronise() reports, or that of a runtime already
// shut down at the end of the process.
void release(void* memory) noexcept {
  cudaFree(memory);
}

void destroyStream(CUstream_st* stream) noexcept {
  if (stream == nullptr) return;
  cudaStreamSynchronize(stream);
  cudaStreamDestroy(stream);
}

void copyToDevice(void* deviceDestination, const void* hostSource, std::size_t bytes, CUstream_st* stream) {
  copy(deviceDestination, hostSource, bytes, cudaMemcpyHostToDevice, stream);
}

void copyToHost(void* hostDestination, const void* deviceSource, std::size_t bytes, CUstream_st* stream) {
  copy(hostDestination, deviceSource, bytes, cudaMemcpyDeviceToHost, stream);
}

void copyOnDevice(void* deviceDestination, const void* deviceSource, std::size_t bytes, CUstream_st* stream) {
  copy(deviceDestination, deviceSource, bytes, cudaMemcpyDeviceToDevice, stream);
}

void fillOnDevice(void* deviceMemory, unsigned char value, std::size_t bytes, CUstream_st* stream) {
  if (bytes != 0) throwOnFailure(cudaMemsetAsync(deviceMemory, value, bytes, stream), "fill");
}

CUstream_st* createStream() {
  cudaStream_t stream = nullptr;
  throwOnFailure(cudaStreamCreate(&stream), "creation of a stream");
  return stream;
}

void synchronise(CUstream_st* stream) {
  // A launch that never started leaves its mark at once, one that went wrong on the device shows when it is waited for.
  const cudaError started = cudaGetLastError();
  const cudaError finished = cudaStreamSynchronize(stream);
  throwOnFailure(finished, "work on the device");
  throwOnFailure(started, "start of work on the device");
}

std::string deviceName() {
  int device = 0;
  throwOnFailure(cudaGetDevice(&device), "query of the current device");
  cudaDeviceProp properties;
  throwOnFailure(cudaGetDeviceProperties(&properties, device), "query of the current device");
  return properties.name;
}

}  // namespace gpuruntime::recipes
