#include "support/fma.hpp"

namespace {

using namespace benchsupport;
using gpuruntime::convolutioncommon::KernelType;
using gpuruntime::convolutioncommon::KernelTypeColumn;
using gpuruntime::convolutioncommon::KernelTypeRow;

constexpr unsigned long side = 2048;

// A line of N taps over a square page.
template <class T, int N, KernelType direction>
void convolutionMatrix(benchmark::State& state) {
  DeviceArray<T> in(side, side), filter(N), out(side, side);
  gpuruntime::recipes::fillOnDevice(in.data(), 0x3C, in.bytes());
  gpuruntime::recipes::fillOnDevice(filter.data(), 0x3B, filter.bytes());
  constexpr unsigned long half = N / 2;
  constexpr bool isColumn = direction == KernelTypeColumn;
  const gpuruntime::convn::OffsetsAndSzs pass{0,
                                              0,
                                              0,
                                              {isColumn ? half : 0, isColumn ? 0 : half, side, side},
                                              {isColumn ? half : 0, isColumn ? 0 : half},
                                              0,
                                              0,
                                              0,
                                              0,
                                              side,
                                              side,
                                              true};
  const std::vector<unsigned long> size{side, side};
  measureProducts<T>(state, in.size(), in.size() * N, [&] {
    gpuruntime::ConvolutionMatrix::Invoker<T, mpl_::int_<N>>()(nullptr, out.data(), in.data(), filter.data(), size,
                                                               size, pass, 2, direction);
  });
}
GPURUNTIME_BENCHMARK(convolutionMatrix<float, 9, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float, 9, KernelTypeRow>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float, 16, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float, 16, KernelTypeRow>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float, 32, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float, 32, KernelTypeRow>);
GPURUNTIME_BENCHMARK(convolutionMatrix<double, 9, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<double, 9, KernelTypeRow>);
GPURUNTIME_BENCHMARK(convolutionMatrix<double, 32, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<double, 32, KernelTypeRow>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float2, 36, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<float2, 36, KernelTypeRow>);
GPURUNTIME_BENCHMARK(convolutionMatrix<double2, 24, KernelTypeColumn>);
GPURUNTIME_BENCHMARK(convolutionMatrix<double2, 24, KernelTypeRow>);

}  // namespace
