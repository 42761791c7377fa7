#include <gpuruntime/util/device.hpp>

#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <string>

#include "hostenvironment.hpp"
#include "platform/platform.hpp"
#include "safecast.hpp"

namespace gpuruntime {
namespace {

constexpr unsigned long largestUsableGridSize = 65535;

}  // namespace

CUDADeviceProperties::CUDADeviceProperties(int device) {
  platform::cudaDeviceProp limits;
  util::checkAndThrow(platform::cudaGetDeviceProperties(&limits, device));

  maxThreadsPerBlock = util::safeCast<unsigned long>(limits.maxThreadsPerBlock);
  for (std::size_t i = 0; i < 3; ++i) maxThreadsDim[i] = util::safeCast<unsigned long>(limits.maxThreadsDim[i]);
  for (std::size_t i = 0; i < 3; ++i) maxGridSize[i] = util::safeCast<unsigned long>(limits.maxGridSize[i]);
  for (std::size_t i = 0; i < 3; ++i) usableGridSize[i] = std::min(maxGridSize[i], largestUsableGridSize);
  multiProcessorCount = util::safeCast<unsigned long>(limits.multiProcessorCount);
  major = util::safeCast<unsigned long>(limits.major);
  minor = util::safeCast<unsigned long>(limits.minor);
}

namespace util {

void checkAndThrow(cudaError status) {
  if (status == cudaSuccess) return;
  const std::string text = platform::cudaGetErrorString(status);
  qxErrMsgId(vantor::gpu::device::UnknownCUDAError(text));
}

const CUDADeviceProperties& getCurrentDeviceProperties() {
  static boost::shared_ptr<CUDADeviceProperties> cached;
  static int cachedDevice = -1;

  int device = 0;
  checkAndThrow(platform::cudaGetDevice(&device));
  if (!cached || device != cachedDevice) {
    cached.reset(new CUDADeviceProperties(device));
    cachedDevice = device;
  }
  return *cached;
}

}  // namespace util
}  // namespace gpuruntime
