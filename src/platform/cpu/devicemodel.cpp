#include "devicemodel.hpp"

#include "parallelcopy.hpp"

#include <algorithm>
#include <cstring>
#include <thread>

namespace gpuruntime::platform {

DeviceModel& DeviceModel::instance() {
  static DeviceModel model;
  return model;
}

cudaDeviceProp DeviceModel::defaultDevice() {
  const int hardwareThreads = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  return {1024, {1024, 1024, 64}, {2147483647, 65535, 65535}, hardwareThreads, 9, 0};
}

void DeviceModel::reset() {
  *this = DeviceModel();
}

void DeviceModel::limitKernels(int threads) {
  allKernelsLimit_ = threads;
}

void DeviceModel::limitKernel(const void* kernel, int threads) {
  kernelLimits_[kernel] = threads;
}

void DeviceModel::failCall(Call call, unsigned int occurrence, cudaError status) {
  failures_.push_back({call, occurrence, status});
  observed_ = true;
}

void DeviceModel::startRecording() {
  calls_.clear();
  recording_ = observed_ = true;
}

unsigned long DeviceModel::countOf(Call call) const {
  return static_cast<unsigned long>(
      std::count_if(calls_.begin(), calls_.end(), [=](const RecordedCall& made) { return made.call == call; }));
}

cudaError DeviceModel::noteObserved(const RecordedCall& call) {
  if (recording_) calls_.push_back(call);
  for (Failure& failure : failures_) {
    if (failure.call == call.call && failure.remaining > 0 && --failure.remaining == 0) return failure.status;
  }
  return cudaSuccess;
}

int DeviceModel::threadLimit(const void* kernel) const {
  if (!kernelLimits_.empty()) {
    const auto own = kernelLimits_.find(kernel);
    if (own != kernelLimits_.end()) return own->second;
  }
  return allKernelsLimit_ > 0 ? allKernelsLimit_ : devices[static_cast<std::size_t>(currentDevice)].maxThreadsPerBlock;
}

cudaError cudaGetDevice(int* device) {
  DeviceModel& model = DeviceModel::instance();
  *device = model.currentDevice;
  return model.note({Call::getDevice});
}

cudaError cudaGetDeviceProperties(cudaDeviceProp* properties, int device) {
  DeviceModel& model = DeviceModel::instance();
  if (device < 0 || static_cast<std::size_t>(device) >= model.devices.size()) return cudaErrorInvalidDevice;
  *properties = model.devices[static_cast<std::size_t>(device)];
  return model.note({Call::getDeviceProperties});
}

const char* cudaGetErrorString(cudaError status) {
  (void)DeviceModel::instance().note({Call::getErrorString});
  switch (status) {
    case cudaSuccess:
      return "no error";
    case cudaErrorInvalidValue:
      return "invalid argument";
    case cudaErrorMemoryAllocation:
      return "out of memory";
    case cudaErrorInvalidConfiguration:
      return "invalid configuration argument";
    case cudaErrorInvalidDevice:
      return "invalid device ordinal";
    case cudaErrorNoKernelImageForDevice:
      return "no kernel image is available for execution on the device";
    case cudaErrorLaunchFailure:
      return "unspecified launch failure";
    default:
      return "unknown error";
  }
}

cudaError cudaMemcpyAsync(void* destination, const void* source, std::size_t bytes, cudaMemcpyKind, CUstream_st*) {
  const cudaError status = DeviceModel::instance().note({Call::memcpy});
  if (status == cudaSuccess) parallelCopy(destination, source, bytes);
  return status;
}

cudaError cudaStreamSynchronize(CUstream_st*) {
  return DeviceModel::instance().note({Call::streamSynchronize});
}

namespace detail {

cudaError functionAttributes(cudaFuncAttributes* attributes, const void* kernel) {
  DeviceModel& model = DeviceModel::instance();
  attributes->maxThreadsPerBlock = model.threadLimit(kernel);
  return model.note({Call::funcGetAttributes, kernel});
}

cudaError beginLaunch(const void* kernel, Extent grid, Extent shape, CUstream_st*) {
  DeviceModel& model = DeviceModel::instance();
  const cudaError status = model.note({Call::launch, kernel, grid, shape});
  if (status != cudaSuccess) return status;
  const cudaDeviceProp& device = model.devices[static_cast<std::size_t>(model.currentDevice)];
  const auto fits = [](unsigned int extent, int limit) { return extent > 0 && extent <= static_cast<unsigned>(limit); };
  const bool gridFits =
      fits(grid.x, device.maxGridSize[0]) && fits(grid.y, device.maxGridSize[1]) && fits(grid.z, device.maxGridSize[2]);
  const bool blockFits = fits(shape.x, device.maxThreadsDim[0]) && fits(shape.y, device.maxThreadsDim[1]) &&
                         fits(shape.z, device.maxThreadsDim[2]);
  const unsigned long threads = static_cast<unsigned long>(shape.x) * shape.y * shape.z;
  if (!gridFits || !blockFits || threads > static_cast<unsigned long>(model.threadLimit(kernel))) {
    return cudaErrorInvalidConfiguration;
  }
  return cudaSuccess;
}

cudaError copyToSymbol(void* symbol, std::size_t room, const void* source, std::size_t bytes) {
  const cudaError status = DeviceModel::instance().note({Call::memcpyToSymbol});
  if (bytes > room) return cudaErrorInvalidValue;
  if (status == cudaSuccess) std::memcpy(symbol, source, bytes);
  return status;
}

cudaError copyFromSymbol(void* destination, const void* symbol, std::size_t room, std::size_t bytes) {
  const cudaError status = DeviceModel::instance().note({Call::memcpyFromSymbol});
  if (bytes > room) return cudaErrorInvalidValue;
  if (status == cudaSuccess) std::memcpy(destination, symbol, bytes);
  return status;
}

}  // namespace detail
}  // namespace gpuruntime::platform
