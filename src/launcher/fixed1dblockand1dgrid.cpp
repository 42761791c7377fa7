#include <gpuruntime/launcher/fixed1dblockand1dgrid.hpp>

namespace gpuruntime::fixed1dblockand1dgriddetail {

GridAndBlock chooseFixed1DBlockAnd1DGrid(const platform::cudaFuncAttributes& /*attributes*/, unsigned long blockSize,
                                         unsigned long numBlocks) {
  return launchdetail::splitBlocks(numBlocks, blockSize);
}

}  // namespace gpuruntime::fixed1dblockand1dgriddetail
