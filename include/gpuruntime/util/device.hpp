/// @file
/// The device layer: limits of the current device, and the error that a failed device call turns into.
///
/// One host thread at a time calls the library. Nothing here takes a lock.
#pragma once

#include <gpuruntime/export.hpp>
#include <gpuruntime/platformtypes.hpp>

#include <boost/array.hpp>

namespace gpuruntime {

/// Limits of one device, as the launch choosers read them.
class CUDADeviceProperties {
 public:
  /// Asks the runtime for the limits of `device`.
  /// @throws what util::checkAndThrow raises if the query fails; `InvalidValue` if a limit is negative.
  explicit CUDADeviceProperties(int device);

  boost::array<unsigned long, 3> maxThreadsDim;   ///< Limits on the extents of a block.
  boost::array<unsigned long, 3> maxGridSize;     ///< Limits on the extents of a grid, as the device states them.
  boost::array<unsigned long, 3> usableGridSize;  ///< The same, each at most 65535: what every launch keeps to.
  unsigned long maxThreadsPerBlock = 0;           ///< Limit on the threads of a block.
  unsigned long multiProcessorCount = 0;  ///< Number of multiprocessors; of hardware threads on the cpu backend.
  unsigned long major = 0;                ///< Compute capability, major number.
  unsigned long minor = 0;                ///< Compute capability, minor number.
};

namespace util {

/// Returns if `status` is `cudaSuccess`. Otherwise raises the error `vantor::gpu::device::UnknownCUDAError` with the
/// runtime's text for the status; see MessageError.
GPURUNTIME_API void checkAndThrow(cudaError status);

/// Properties of the calling thread's current device.
///
/// One entry is cached; a change of the current device is seen at once and replaces it. The reference holds until the
/// next call. Raises what the failed query raises, and keeps the entry that was there.
GPURUNTIME_API const CUDADeviceProperties& getCurrentDeviceProperties();

}  // namespace util
}  // namespace gpuruntime
