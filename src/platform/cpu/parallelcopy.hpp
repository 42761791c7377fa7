/// @file
/// Copies and fills of ordinary memory by all cores.
#pragma once

#include <oneapi/tbb/blocked_range.h>
#include <oneapi/tbb/parallel_for.h>

#include <cstddef>
#include <cstring>

namespace gpuruntime::platform {

// One core does not fill the memory bus. Below this size it is the caches that count, and a task costs more than it
// gains.
inline constexpr std::size_t parallelBytes = std::size_t{1} << 20;

/// Calls part(first, size) for consecutive parts of `bytes` bytes, on all cores if there are many.
template <class Part>
void forEachPart(std::size_t bytes, Part part) {
  if (bytes == 0) return;
  if (bytes < parallelBytes) return part(0, bytes);
  using Range = oneapi::tbb::blocked_range<std::size_t>;
  oneapi::tbb::parallel_for(Range(0, bytes, parallelBytes / 2),
                            [=](const Range& range) { part(range.begin(), range.size()); });
}

inline void parallelCopy(void* destination, const void* source, std::size_t bytes) {
  forEachPart(bytes, [=](std::size_t first, std::size_t size) {
    std::memcpy(static_cast<char*>(destination) + first, static_cast<const char*>(source) + first, size);
  });
}

}  // namespace gpuruntime::platform
