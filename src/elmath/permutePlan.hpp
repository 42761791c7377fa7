/// @file
/// The plan of a permutation: which dimensions remain, along which one a block walks, and the launch that covers them.
///
/// Positions of dimensions count from 0, the entries of an order from 1. Where input dimension 0 stays first, the
/// *fixed* case, a block is a row of threads and moves runs of elements. Where it moves, to position p of the output, a
/// block is a square of threads and transposes tiles of output dimensions 0 and p. In both a block walks several
/// *steps* along one dimension, its *jump dimension*.
#pragma once

#include <algorithm>
#include <boost/tuple/tuple.hpp>
#include <functional>
#include <iterator>
#include <numeric>
#include <vector>

#include "gpucommon/hostDeviceCommonArithmetic.hpp"

namespace gpuruntime {
namespace {

using Sizes = std::vector<unsigned long>;

struct BlockParams {
  unsigned long blockX, blockY;
  unsigned long stepsX, stepsY;  ///< Steps of the walk, for a jump along dimension 0 and along another; one is 1.

  unsigned long tile() const { return std::max(blockX, blockY); }
  unsigned long steps() const { return std::max(stepsX, stepsY); }
};

struct GridInfo {
  Sizes grid;                    ///< Number of walks along each dimension: the radices of a block's number.
  unsigned long countX, countY;  ///< Products of the padded sizes below p and from p on; of all, and 1, if fixed.
};

/// Output size, input size and order without the dimensions of size 1.
inline boost::tuples::tuple<Sizes, Sizes, Sizes> iComputeSqueezedSzAndOrder(const Sizes& outputSize,
                                                                            const Sizes& inputSize,
                                                                            const Sizes& order) {
  Sizes squeezedOutput, squeezedInput, squeezedOrder, removed;
  squeezedOutput.reserve(outputSize.size());
  squeezedInput.reserve(inputSize.size());
  squeezedOrder.reserve(order.size());
  removed.reserve(order.size());
  for (std::size_t i = 0; i < outputSize.size(); ++i) {
    if (outputSize[i] != 1) {
      squeezedOutput.push_back(outputSize[i]);
      squeezedOrder.push_back(order[i]);
    } else if (order[i] <= inputSize.size()) {
      removed.push_back(order[i]);
    }
  }
  for (unsigned long& position : squeezedOrder) {
    position -= static_cast<unsigned long>(
        std::count_if(removed.begin(), removed.end(), [=](unsigned long gone) { return gone < position; }));
  }
  std::remove_copy(inputSize.begin(), inputSize.end(), std::back_inserter(squeezedInput), 1UL);
  return {squeezedOutput, squeezedInput, squeezedOrder};
}

inline bool isFirstDimFixed(const Sizes& order) {
  return order[0] == 1;
}

/// Where input dimension 0 lands in the output.
inline unsigned long iFindDimThatMapToFirstDim(const Sizes& order) {
  return static_cast<unsigned long>(std::find(order.begin(), order.end(), 1UL) - order.begin());
}

/// The longest dimension, where fixed; dimension 0 then counts the blocks of 256 elements that it holds. Otherwise the
/// longer of the two that are tiled. The first of equals.
inline unsigned long iIdentifyJumpDim(const Sizes& outputSize, const Sizes& order) {
  if (!isFirstDimFixed(order)) {
    const unsigned long p = iFindDimThatMapToFirstDim(order);
    return outputSize[0] >= outputSize[p] ? 0 : p;
  }
  Sizes lengths = outputSize;
  lengths[0] >>= 8;
  return static_cast<unsigned long>(std::max_element(lengths.begin(), lengths.end()) - lengths.begin());
}

inline BlockParams iDecideBlkParams(unsigned long jump, const Sizes& outputSize, const Sizes& order) {
  using namespace gpucommon::hostDeviceMath;
  if (isFirstDimFixed(order)) {
    const unsigned long width = outputSize[0] < 256 ? roundIntegerUpToMultipleOf(outputSize[0], 32UL) : 256UL;
    return {width, 1, 64, 1};
  }
  // The longer of the tiled dimensions is the one to walk along.
  const unsigned long length = outputSize[jump];
  const unsigned long edge = length < 16 ? roundIntegerUpToMultipleOf(length, 8UL) : 16UL;
  const unsigned long steps = std::min(ceiledIntegerDivision(length, edge), 128UL);
  return jump == 0 ? BlockParams{edge, edge, steps, 1} : BlockParams{edge, edge, 1, steps};
}

inline GridInfo iSetupGridInfo(unsigned long jump, const Sizes& outputSize, const Sizes& order, unsigned long tile,
                               unsigned long steps) {
  // What one walk covers of each dimension.
  const unsigned long p = iFindDimThatMapToFirstDim(order);
  Sizes reach(outputSize.size(), 1);
  reach[0] = reach[p] = tile;
  reach[jump] *= steps;

  Sizes padded = outputSize, grid = outputSize;
  for (std::size_t k = 0; k < padded.size(); ++k) {
    if (reach[k] == 1) continue;  // Rounding would make 1 of a size of 0.
    padded[k] = gpucommon::hostDeviceMath::roundIntegerUpToMultipleOf(padded[k], reach[k]);
    grid[k] = padded[k] / reach[k];
  }
  const auto split = p == 0 ? padded.end() : padded.begin() + static_cast<std::ptrdiff_t>(p);
  const std::multiplies<unsigned long> times;
  return {grid, std::accumulate(padded.begin(), split, 1UL, times), std::accumulate(split, padded.end(), 1UL, times)};
}

}  // namespace
}  // namespace gpuruntime
