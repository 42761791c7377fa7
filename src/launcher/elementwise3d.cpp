#include <gpuruntime/launcher/elementwise3d.hpp>

#include <algorithm>

namespace gpuruntime::elementwise3ddetail {

using gpucommon::hostDeviceMath::ceiledIntegerDivision;
using launchdetail::preferredBlockSize;

platform::Extent choose3DBlock(const boost::array<unsigned long, 3>& maxThreadsDim,
                               const platform::cudaFuncAttributes& attributes, unsigned long sizeX, unsigned long sizeY,
                               unsigned long /*sizeZ*/) {
  const unsigned long limit = launchdetail::threadLimit(attributes);
  unsigned long blockX = preferredBlockSize, blockY = 1, blockZ = 1;
  if (sizeX < preferredBlockSize) {
    blockX = sizeX;
    blockY = std::min(maxThreadsDim[1], preferredBlockSize / sizeX);
  }
  if (blockY > sizeY) {
    blockZ = std::min(maxThreadsDim[2], preferredBlockSize / (blockX * sizeY));
    blockY = sizeY;
  }
  if (blockX * blockY * blockZ > limit) {
    if (blockX > limit) {
      blockX = limit;
      blockY = blockZ = 1;
    } else if (blockX * blockY <= limit) {
      blockZ = std::min(maxThreadsDim[2], limit / (blockX * blockY));
    } else {
      blockY = std::min(maxThreadsDim[1], limit / blockX);
      blockZ = 1;
    }
  }
  return {static_cast<unsigned int>(blockX), static_cast<unsigned int>(blockY), static_cast<unsigned int>(blockZ)};
}

GridBlockAndSteps chooseElementwise3DGridAndBlock(const platform::cudaFuncAttributes& single,
                                                  const platform::cudaFuncAttributes& multi, unsigned long sizeX,
                                                  unsigned long sizeY, unsigned long sizeZ) {
  const CUDADeviceProperties& device = util::getCurrentDeviceProperties();
  const auto& limit = device.usableGridSize;
  platform::Extent block = choose3DBlock(device.maxThreadsDim, single, sizeX, sizeY, sizeZ);
  unsigned long gridX = ceiledIntegerDivision<unsigned long>(sizeX, block.x);
  unsigned long gridY = ceiledIntegerDivision<unsigned long>(sizeY, block.y);
  unsigned long gridZ = ceiledIntegerDivision<unsigned long>(sizeZ, block.z);
  if (gridX <= limit[0] && gridY <= limit[1] && gridZ <= limit[2]) {
    return {gridX, gridY, gridZ, block.x, block.y, block.z, 1, 1, 1};
  }

  block = choose3DBlock(device.maxThreadsDim, multi, sizeX, sizeY, sizeZ);
  gridX = ceiledIntegerDivision<unsigned long>(sizeX, block.x);
  gridY = ceiledIntegerDivision<unsigned long>(sizeY, block.y);
  gridZ = ceiledIntegerDivision<unsigned long>(sizeZ, block.z);
  const unsigned long stepsX = launchdetail::roundSteps(ceiledIntegerDivision(gridX, limit[0]));
  const unsigned long stepsY = launchdetail::roundSteps(ceiledIntegerDivision(gridY, limit[1]));
  const unsigned long stepsZ = launchdetail::roundSteps(ceiledIntegerDivision(gridZ, limit[2]));
  GridBlockAndSteps shape{};
  shape.gridX = ceiledIntegerDivision(gridX, stepsX);
  shape.gridY = ceiledIntegerDivision(gridY, stepsY);
  shape.gridZ = ceiledIntegerDivision(gridZ, stepsZ);
  shape.blockX = block.x;
  shape.blockY = block.y;
  shape.blockZ = block.z;
  shape.stepsX = stepsX;
  shape.stepsY = stepsY;
  shape.stepsZ = stepsZ;
  return shape;
}

}  // namespace gpuruntime::elementwise3ddetail
