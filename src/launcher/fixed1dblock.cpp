#include <gpuruntime/launcher/fixed1dblock.hpp>

#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime::fixed1dblockdetail {

GridAndBlock chooseFixed1DBlockGrid(unsigned long n, unsigned long blockSize) {
  return launchdetail::splitBlocks(gpucommon::hostDeviceMath::ceiledIntegerDivision(n, blockSize), blockSize);
}

}  // namespace gpuruntime::fixed1dblockdetail
