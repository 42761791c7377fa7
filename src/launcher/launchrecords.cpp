#include <gpuruntime/launcher/launchrecords.hpp>

namespace gpuruntime::launchdetail {

GridAndBlock splitBlocks(unsigned long blocks, unsigned long blockSize) {
  const unsigned long limit = util::getCurrentDeviceProperties().usableGridSize[0];
  if (blocks <= limit) return {blocks, 1, 1, blockSize, 1, 1};
  const unsigned long last = blocks - 1;
  const unsigned long gridY = last / limit + 1;
  return {last / gridY + 1, gridY, 1, blockSize, 1, 1};
}

unsigned long roundSteps(unsigned long steps) {
  return steps >= 2 && steps <= 4 ? 4 : steps;
}

}  // namespace gpuruntime::launchdetail
