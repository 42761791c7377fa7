#include <gpuruntime/convolutions/conv2.hpp>

#include "convolutions/convn.hpp"

namespace gpuruntime {
namespace conv2 {
namespace {

using convn::Member;
using convn::OffsetsAndSzs;
using convn::Sizes;

/// The passes over the one page that a matrix is.
template <class T>
struct Convolution2DCol_Invoker {
  Member member;

  void operator()(CUstream_st* stream, T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                  const OffsetsAndSzs& pass) const {
    convn::launchColumns(stream, output, input, inputSizes, outputSizes, pass, member);
  }
};

template <class T>
struct Convolution2DRow_Invoker {
  Member member;

  void operator()(CUstream_st* stream, T* output, const T* input, const Sizes& inputSizes, const Sizes& outputSizes,
                  const OffsetsAndSzs& pass) const {
    convn::launchRows(stream, output, input, inputSizes, outputSizes, pass, member);
  }
};

}  // namespace
}  // namespace conv2

template <class T, class N>
void ConvolutionMatrix::Invoker<T, N>::operator()(CUstream_st* stream, T* output, const T* input, const T* filter,
                                                  const std::vector<unsigned long>& inputSizes,
                                                  const std::vector<unsigned long>& outputSizes,
                                                  const convn::OffsetsAndSzs& pass, const unsigned long& dimensions,
                                                  const convolutioncommon::KernelType& direction) const {
  const convn::Member member{N::value + pass.extraTaps, conv::haloOf<T>(N::value)};
  if (platform::cudaMemcpyToSymbolAsync(convolutioncommon::filter,
                                        filter + pass.filterLineOffset + pass.filterPageOffset, member.taps * sizeof(T),
                                        0, cudaMemcpyDeviceToDevice, nullptr) != cudaSuccess) {
    return;
  }
  const auto run = [&](auto invoker) { invoker(stream, output, input, inputSizes, outputSizes, pass); };
  const bool hasPages = dimensions >= 3;
  if (direction == convolutioncommon::KernelTypeColumn) {
    hasPages ? run(convn::ConvolutionNDCol_Invoker<T>{member}) : run(conv2::Convolution2DCol_Invoker<T>{member});
  } else {
    hasPages ? run(convn::ConvolutionNDRow_Invoker<T>{member}) : run(conv2::Convolution2DRow_Invoker<T>{member});
  }
}

#define GPURUNTIME_INSTANTIATE_PASS(A, T, N) template struct ConvolutionMatrix::Invoker<T, mpl_::int_<N>>;
GPURUNTIME_PASS_MEMBERS(GPURUNTIME_INSTANTIATE_PASS, )

}  // namespace gpuruntime
