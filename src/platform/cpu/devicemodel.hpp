/// @file
/// The device that the cpu backend pretends to be. Tests can tell it other limits, several devices, kernels with a
/// smaller thread limit and calls that fail, and can read back the calls made: so failure handling and launch geometry
/// are tested without a GPU.
#pragma once

#include "runtime.hpp"

#include <map>
#include <vector>

namespace gpuruntime::platform {

enum class Call {
  getDevice,
  getDeviceProperties,
  getErrorString,
  funcGetAttributes,
  launch,
  memcpy,
  memcpyToSymbol,
  memcpyFromSymbol,
  streamSynchronize
};

struct RecordedCall {
  Call call;
  const void* kernel = nullptr;
  Extent grid{0, 0, 0};
  Extent block{0, 0, 0};
};

class DeviceModel {
 public:
  /// The model of this library image. One host thread at a time uses it, as it does the library.
  static DeviceModel& instance();

  /// One modern device whose multiprocessor count is the number of hardware threads.
  static cudaDeviceProp defaultDevice();

  /// Back to one default device, nothing recorded, nothing to fail.
  void reset();

  std::vector<cudaDeviceProp> devices{defaultDevice()};
  int currentDevice = 0;

  /// Limits every kernel, or one by its identity, to `threads` threads a block.
  void limitKernels(int threads);
  void limitKernel(const void* kernel, int threads);

  /// Lets the `occurrence`-th call of this kind from now on, counted from 1, fail with `status`.
  void failCall(Call call, unsigned int occurrence, cudaError status);

  /// Records the calls from now on.
  void startRecording();
  const std::vector<RecordedCall>& calls() const { return calls_; }
  unsigned long countOf(Call call) const;

  /// Notes a call and gives the status that it is to return.
  cudaError note(const RecordedCall& call) { return observed_ ? noteObserved(call) : cudaSuccess; }

  int threadLimit(const void* kernel) const;

 private:
  struct Failure {
    Call call;
    unsigned int remaining;
    cudaError status;
  };

  cudaError noteObserved(const RecordedCall& call);

  bool observed_ = false;
  bool recording_ = false;
  int allKernelsLimit_ = 0;
  std::map<const void*, int> kernelLimits_;
  std::vector<Failure> failures_;
  std::vector<RecordedCall> calls_;
};

}  // namespace gpuruntime::platform
