#include <gpuruntime/elmath/permute.hpp>

#include "elmath/permuteKernels.hpp"
#include "elmath/permutePlan.hpp"
#include "gpucommon/CUDATypes.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::hostDeviceMath::ceiledIntegerDivision;

constexpr unsigned int tileSize = 16;

/// Copies the plan to the device, up to the first failure; true if there is none.
bool copyDimsToConstMem(CUstream_st* stream, const Sizes& inputSize, const Sizes& outputSize, const Sizes& grid,
                        const Sizes& order) {
  const auto copy = [=](PlanSymbol& symbol, const Sizes& values) {
    const std::size_t bytes = values.size() * sizeof(unsigned long);
    return platform::cudaMemcpyToSymbolAsync(symbol, values.data(), bytes, 0, cudaMemcpyHostToDevice, stream) ==
           cudaSuccess;
  };
  return copy(permuteInputSize, inputSize) && copy(permuteOutputSize, outputSize) && copy(permuteGridDim, grid) &&
         copy(permuteOrder, order);
}

template <class T>
void permuteImpl(CUstream_st* stream, T* output, const Sizes& outputSize, const T* input, const Sizes& inputSize,
                 const Sizes& order) {
  Sizes toSize, fromSize, toOrder;
  boost::tuples::tie(toSize, fromSize, toOrder) = iComputeSqueezedSzAndOrder(outputSize, inputSize, order);
  if (toOrder.empty()) toSize = fromSize = toOrder = {1};  // One element.
  const bool fixed = isFirstDimFixed(toOrder);
  const unsigned long jump = iIdentifyJumpDim(toSize, toOrder);
  const BlockParams block = iDecideBlkParams(jump, toSize, toOrder);
  const GridInfo info = iSetupGridInfo(jump, toSize, toOrder, block.tile(), block.steps());
  if (!copyDimsToConstMem(stream, fromSize, toSize, info.grid, toOrder)) return;
  // Without elements there is nothing to move, and the grid may have zeros that no block can be decoded by.
  if (std::find(toSize.begin(), toSize.end(), 0UL) != toSize.end()) return;

  const unsigned long rank = toOrder.size();
  const unsigned long sizeX = ceiledIntegerDivision(info.countX, block.stepsX);
  const unsigned long sizeY = ceiledIntegerDivision(info.countY, block.stepsY);
  if (fixed) {
    fixed1dblock::launchWithDeviceFunctor<PermuteKernelFixDim1<T>>(stream, sizeX, block.blockX, output, input, rank,
                                                                   info.countX, jump, block.steps());
  } else {
    fixed2dblock::launchWithDeviceFunctor<PermuteKernelVaryDim1<T, tileSize>>(
        stream, sizeX, sizeY, block.blockX, block.blockY, output, input, rank, info.countX, info.countY, jump,
        block.steps());
  }
}

}  // namespace

template <class T>
void Permute::Invoker<T>::operator()(CUstream_st* stream, T* output, unsigned long numOutputSizes,
                                     unsigned long const* outputSize, const T* input, unsigned long numInputSizes,
                                     unsigned long const* inputSize, unsigned long orderLength,
                                     unsigned long const* order) const {
  using Storage = gpucommon::StorageOf<T>;
  permuteImpl(stream, reinterpret_cast<Storage*>(output), Sizes(outputSize, outputSize + numOutputSizes),
              reinterpret_cast<const Storage*>(input), Sizes(inputSize, inputSize + numInputSizes),
              Sizes(order, order + orderLength));
}

GPURUNTIME_INSTANTIATE(Permute, ALL_TYPES);

}  // namespace gpuruntime
