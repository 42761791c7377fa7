#include <gpuruntime/launcher/elementwise.hpp>

#include <algorithm>

namespace gpuruntime::elementwisedetail {

GridAndBlock chooseElementwiseGridAndBlock(const platform::cudaFuncAttributes& attributes, unsigned long n) {
  const unsigned long blockX = std::min(launchdetail::preferredBlockSize, launchdetail::threadLimit(attributes));
  const unsigned long blocks = n == 0 ? 0 : (n - 1) / blockX + 1;
  return launchdetail::splitBlocks(blocks, blockX);
}

}  // namespace gpuruntime::elementwisedetail
