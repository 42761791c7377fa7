#include <gpuruntime/launcher/fixed2dblockwithpages.hpp>

namespace gpuruntime::fixed2dblockwithpagesdetail {

using gpucommon::hostDeviceMath::ceiledIntegerDivision;

GridBlockAndSteps chooseFixed2DBlockWithPagesGrid(unsigned long sizeX, unsigned long sizeY, unsigned long numPages,
                                                  unsigned long blockX, unsigned long blockY) {
  const auto& limit = util::getCurrentDeviceProperties().usableGridSize;
  const unsigned long gridX = ceiledIntegerDivision(sizeX, blockX), gridY = ceiledIntegerDivision(sizeY, blockY);
  if (gridX <= limit[0] && gridY <= limit[1] && numPages <= limit[2]) {
    return {gridX, gridY, numPages, blockX, blockY, 1, 1, 1, 1};
  }
  const unsigned long stepsX = launchdetail::roundSteps(ceiledIntegerDivision(gridX, limit[0]));
  const unsigned long stepsY = launchdetail::roundSteps(ceiledIntegerDivision(gridY, limit[1]));
  const unsigned long stepsZ = ceiledIntegerDivision(numPages, limit[2]);
  return {ceiledIntegerDivision(gridX, stepsX),
          ceiledIntegerDivision(gridY, stepsY),
          ceiledIntegerDivision(numPages, stepsZ),
          blockX,
          blockY,
          1,
          stepsX,
          stepsY,
          stepsZ};
}

}  // namespace gpuruntime::fixed2dblockwithpagesdetail
