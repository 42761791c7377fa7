/// @file
/// Device memory, copies and streams for callers that have no memory manager of their own.
///
/// A companion library above the kernels: it needs nothing of them, and none of them needs it. Sizes are in bytes.
/// Copies of one stream, and kernels started on it, run in the order of the calls. The null stream is a stream too, and
/// is ordered with every stream of createStream().
#pragma once

#include <gpuruntime/platformtypes.hpp>

#include <cstddef>
#include <string>

namespace gpuruntime::recipes {

/// Device memory of `bytes` bytes with unspecified contents, aligned to at least 64 bytes. Null for 0 bytes.
/// @throws std::bad_alloc if there is not as much memory; std::runtime_error if there is no usable device.
void* allocate(std::size_t bytes);

/// Gives back memory of allocate(), once the device is done with it. Null is allowed.
void release(void* memory) noexcept;

/// Copies between host and device. They may return before the copy is made: until synchronise(stream) has returned, the
/// host's memory must stay and, as a destination, must not be read. Source and destination do not overlap.
/// With 0 bytes both pointers may be null.
/// @throws std::runtime_error with the runtime's text if the copy can't be started.
void copyToDevice(void* deviceDestination, const void* hostSource, std::size_t bytes, CUstream_st* stream = nullptr);
void copyToHost(void* hostDestination, const void* deviceSource, std::size_t bytes, CUstream_st* stream = nullptr);
void copyOnDevice(void* deviceDestination, const void* deviceSource, std::size_t bytes, CUstream_st* stream = nullptr);

/// Sets `bytes` bytes of device memory to `value`, in the order of the stream.
/// @throws std::runtime_error with the runtime's text if the work can't be started.
void fillOnDevice(void* deviceMemory, unsigned char value, std::size_t bytes, CUstream_st* stream = nullptr);

/// A new stream of the current device; null where all work shares one stream.
/// @throws std::runtime_error with the runtime's text on failure.
CUstream_st* createStream();

/// Gives back a stream of createStream(). Work under way on it is finished first. Null is allowed.
void destroyStream(CUstream_st* stream) noexcept;

/// Waits until all work on `stream` is done.
/// @throws std::runtime_error with the runtime's text if a launch or a copy failed since the last call. On the cpu
/// backend all work is done when its call returns, and a launch that is refused, such as one of no pages, leaves no
/// mark.
void synchronise(CUstream_st* stream = nullptr);

/// The current device in words, for printouts.
std::string deviceName();

}  // namespace gpuruntime::recipes
