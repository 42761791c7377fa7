#include <gpuruntime/launcher/fixednumblocks.hpp>

#include <algorithm>

namespace gpuruntime::fixednumblocksdetail {

GridAndBlock chooseFixedNumBlocksGrid(const platform::cudaFuncAttributes& attributes, unsigned long numBlocks) {
  return launchdetail::splitBlocks(numBlocks,
                                   std::min(launchdetail::preferredBlockSize, launchdetail::threadLimit(attributes)));
}

}  // namespace gpuruntime::fixednumblocksdetail
