/// @file
/// The walk of kernels that take several steps, where a grid would exceed the device's limit.
#pragma once

#include "gpucommon/hostDeviceCommonArithmetic.hpp"
#include "platform/platform.hpp"

namespace gpuruntime::launchdetail {

/// Offsets or extents along three dimensions, in elements or in blocks.
struct Distances {
  unsigned long x;
  unsigned long y;
  unsigned long z;
};

/// Visits every combination of the offsets along the dimensions, x fastest. A stride of 0 stands for a single step.
///
/// `numSteps` is the product of the step counts; the last dimension that has a stride takes what the others leave.
/// Steps that lead past the extents fall to the functor's bound test.
class StepWalk {
 public:
  GPURUNTIME_DEVICE StepWalk(unsigned int numSteps, Distances sizes, Distances strides)
      : sizes_(sizes),
        strides_(strides),
        stepsX_(stepsAlong(sizes.x, strides.x, strides.y == 0 && strides.z == 0, numSteps)),
        stepsY_(stepsAlong(sizes.y, strides.y, strides.z == 0, numSteps)) {}

  GPURUNTIME_DEVICE Distances offset(unsigned int step) const {
    const unsigned long row = step / stepsX_;
    return {step % stepsX_ * strides_.x, row % stepsY_ * strides_.y, row / stepsY_ * strides_.z};
  }

  /// Where along each dimension the stretch of a step ends that begins at this offset, and the next one begins.
  GPURUNTIME_DEVICE Distances end(Distances offset) const {
    return {endAlong(sizes_.x, offset.x, strides_.x), endAlong(sizes_.y, offset.y, strides_.y),
            endAlong(sizes_.z, offset.z, strides_.z)};
  }

 private:
  static GPURUNTIME_DEVICE unsigned long endAlong(unsigned long size, unsigned long offset, unsigned long stride) {
    return stride == 0 ? size : gpucommon::hostDeviceMath::minSizeT(size, offset + stride);
  }
  static GPURUNTIME_DEVICE unsigned long stepsAlong(unsigned long size, unsigned long stride, bool isLast,
                                                    unsigned int numSteps) {
    if (stride == 0) return 1;
    return isLast ? numSteps : gpucommon::hostDeviceMath::ceiledIntegerDivision(size, stride);
  }

  Distances sizes_;
  Distances strides_;
  unsigned long stepsX_;
  unsigned long stepsY_;
};

}  // namespace gpuruntime::launchdetail
