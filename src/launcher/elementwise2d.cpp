#include <gpuruntime/launcher/elementwise2d.hpp>

namespace gpuruntime::elementwise2ddetail {

using gpucommon::hostDeviceMath::ceiledIntegerDivision;
using launchdetail::preferredBlockSize;

platform::Extent choose2DBlock(const platform::cudaFuncAttributes& attributes, unsigned long sizeX,
                               unsigned long sizeY) {
  const unsigned long limit = launchdetail::threadLimit(attributes);
  unsigned long blockX = preferredBlockSize, blockY = sizeY == 0 ? 0 : 1;
  if (sizeX < preferredBlockSize) {
    blockX = sizeX;
    blockY = preferredBlockSize / sizeX;
  }
  if (blockX * blockY > limit) {
    blockY = blockX <= limit ? limit / blockX : 1;
    blockX = blockX <= limit ? blockX : limit;
  }
  return {static_cast<unsigned int>(blockX), static_cast<unsigned int>(blockY), 1};
}

GridBlockAndSteps chooseElementwise2DGridAndBlock(const platform::cudaFuncAttributes& single,
                                                  const platform::cudaFuncAttributes& multi, unsigned long sizeX,
                                                  unsigned long sizeY) {
  const auto& limit = util::getCurrentDeviceProperties().usableGridSize;
  platform::Extent block = choose2DBlock(single, sizeX, sizeY);
  unsigned long gridX = ceiledIntegerDivision<unsigned long>(sizeX, block.x);
  unsigned long gridY = ceiledIntegerDivision<unsigned long>(sizeY, block.y);
  if (gridX <= limit[0] && gridY <= limit[1]) return {gridX, gridY, 1, block.x, block.y, 1, 1, 1};

  block = choose2DBlock(multi, sizeX, sizeY);
  gridX = ceiledIntegerDivision<unsigned long>(sizeX, block.x);
  gridY = ceiledIntegerDivision<unsigned long>(sizeY, block.y);
  const unsigned long stepsX = launchdetail::roundSteps(ceiledIntegerDivision(gridX, limit[0]));
  const unsigned long stepsY = launchdetail::roundSteps(ceiledIntegerDivision(gridY, limit[1]));
  return {ceiledIntegerDivision(gridX, stepsX),
          ceiledIntegerDivision(gridY, stepsY),
          1,
          block.x,
          block.y,
          1,
          stepsX,
          stepsY};
}

}  // namespace gpuruntime::elementwise2ddetail
