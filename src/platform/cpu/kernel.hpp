/// @file
/// Kernels and their launch: a kernel is a function that runs a run of blocks one after the other.
#pragma once

#include "../extent.hpp"
#include "block.hpp"
#include "executor.hpp"
#include "qualifiers.hpp"
#include "runtime.hpp"

namespace gpuruntime::platform {

/// Handle of a kernel; its address is the kernel's identity.
template <class... Args>
struct Kernel {
  void (*runBlocks)(Extent grid, Extent shape, BlockRange blocks, Args... args);

  const void* identity() const { return reinterpret_cast<const void*>(runBlocks); }
};

namespace detail {

// Everything a kernel calls is inlined here, or its thread loops could not be vectorised.
template <class K, class... Args>
__attribute__((flatten)) void runBlocks(Extent grid, Extent shape, BlockRange blocks, Args... args) {
  Extent index{static_cast<unsigned int>(blocks.first % grid.x),
               static_cast<unsigned int>(blocks.first / grid.x % grid.y),
               static_cast<unsigned int>(blocks.first / grid.x / grid.y)};
  for (unsigned long block = blocks.first; block < blocks.last; ++block) {
    K::run(Block<>(index, grid, shape), args...);
    if (++index.x == grid.x) {
      index.x = 0;
      if (++index.y == grid.y) {
        index.y = 0;
        ++index.z;
      }
    }
  }
}

}  // namespace detail

template <class K, class... Args>
Kernel<Args...> kernelOf() {
  return {&detail::runBlocks<K, Args...>};
}

template <class... Args>
cudaError cudaFuncGetAttributes(cudaFuncAttributes* attributes, Kernel<Args...> kernel) {
  return detail::functionAttributes(attributes, kernel.identity());
}

template <class... Args>
cudaError launch(Kernel<Args...> kernel, Extent grid, Extent shape, CUstream_st* stream,
                 typename NonDeduced<Args>::type... args) {
  const cudaError status = detail::beginLaunch(kernel.identity(), grid, shape, stream);
  if (status != cudaSuccess) return status;
  auto body = [=](BlockRange blocks) { kernel.runBlocks(grid, shape, blocks, args...); };
  executeBlocks(static_cast<unsigned long>(grid.x) * grid.y * grid.z, body);
  return cudaSuccess;
}

}  // namespace gpuruntime::platform
