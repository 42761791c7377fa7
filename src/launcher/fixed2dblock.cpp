#include <gpuruntime/launcher/fixed2dblock.hpp>

namespace gpuruntime::fixed2dblockdetail {

using gpucommon::hostDeviceMath::ceiledIntegerDivision;

GridBlockAndSteps chooseFixed2DBlockGrid(unsigned long sizeX, unsigned long sizeY, unsigned long blockX,
                                         unsigned long blockY) {
  const auto& limit = util::getCurrentDeviceProperties().usableGridSize;
  const unsigned long gridX = ceiledIntegerDivision(sizeX, blockX), gridY = ceiledIntegerDivision(sizeY, blockY);
  if (gridX <= limit[0] && gridY <= limit[1]) return {gridX, gridY, 1, blockX, blockY, 1, 1, 1};
  const unsigned long stepsX = launchdetail::roundSteps(ceiledIntegerDivision(gridX, limit[0]));
  const unsigned long stepsY = launchdetail::roundSteps(ceiledIntegerDivision(gridY, limit[1]));
  return {
      ceiledIntegerDivision(gridX, stepsX), ceiledIntegerDivision(gridY, stepsY), 1, blockX, blockY, 1, stepsX, stepsY};
}

}  // namespace gpuruntime::fixed2dblockdetail
