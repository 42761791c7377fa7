// The recipes where device memory is ordinary memory and every launch is over when its call returns.
#include <gpuruntime/recipes/memory.hpp>

#include <oneapi/tbb/task_arena.h>

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "parallelcopy.hpp"

namespace gpuruntime::recipes {
namespace {

constexpr std::size_t lineBytes = 64;
constexpr std::size_t hugePageBytes = std::size_t{2} << 20;

}  // namespace

void* allocate(std::size_t bytes) {
  if (bytes == 0) return nullptr;
  // Large arrays take huge pages: kernels with a stride touch a new small page at every step.
  const std::size_t alignment = bytes < 2 * hugePageBytes ? lineBytes : hugePageBytes;
  if (bytes > SIZE_MAX - alignment) throw std::bad_alloc();
  const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
  void* memory = std::aligned_alloc(alignment, rounded);
  if (memory == nullptr) throw std::bad_alloc();
  // A wish; a system without huge pages gives small ones.
  if (alignment == hugePageBytes) madvise(memory, rounded, MADV_HUGEPAGE);
  return memory;
}

void release(void* memory) noexcept {
  std::free(memory);
}

void copyToDevice(void* deviceDestination, const void* hostSource, std::size_t bytes, CUstream_st*) {
  platform::parallelCopy(deviceDestination, hostSource, bytes);
}

void copyToHost(void* hostDestination, const void* deviceSource, std::size_t bytes, CUstream_st*) {
  platform::parallelCopy(hostDestination, deviceSource, bytes);
}

void copyOnDevice(void* deviceDestination, const void* deviceSource, std::size_t bytes, CUstream_st*) {
  platform::parallelCopy(deviceDestination, deviceSource, bytes);
}

void fillOnDevice(void* deviceMemory, unsigned char value, std::size_t bytes, CUstream_st*) {
  platform::forEachPart(bytes, [=](std::size_t first, std::size_t size) {
    std::memset(static_cast<char*>(deviceMemory) + first, value, size);
  });
}

CUstream_st* createStream() {
  return nullptr;
}

void destroyStream(CUstream_st*) noexcept {}

void synchronise(CUstream_st*) {}

std::string deviceName() {
  const int threads = oneapi::tbb::this_task_arena::max_concurrency();
  return "cpu, " + std::to_string(threads) + (threads == 1 ? " thread" : " threads");
}

}  // namespace gpuruntime::recipes
