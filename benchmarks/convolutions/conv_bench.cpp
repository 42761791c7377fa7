#include "support/fma.hpp"

namespace {

using namespace benchsupport;

// `taps` taps in passes of N and extra ones.
template <class T, int N, unsigned long taps, unsigned long n = 1UL << 24>
void convolutionVector(benchmark::State& state) {
  DeviceArray<T> in(n), filter(taps), out(n);
  gpuruntime::recipes::fillOnDevice(in.data(), 0x3C, in.bytes());
  gpuruntime::recipes::fillOnDevice(filter.data(), 0x3B, filter.bytes());
  measureProducts<T>(state, n, n * taps, [&] {
    for (unsigned long first = 0; first < taps; first += N) {
      gpuruntime::ConvolutionVector::Invoker<T, mpl_::int_<N>>()(nullptr, out.data(), in.data(), filter.data(),
                                                                 {first, n, n, 0, 0, first, first == 0});
    }
  });
}
GPURUNTIME_BENCHMARK(convolutionVector<float, 3, 3>);
GPURUNTIME_BENCHMARK(convolutionVector<float, 16, 16>);
GPURUNTIME_BENCHMARK(convolutionVector<float, 64, 64>);
GPURUNTIME_BENCHMARK(convolutionVector<float, 128, 128>);
GPURUNTIME_BENCHMARK(convolutionVector<double, 3, 3>);
GPURUNTIME_BENCHMARK(convolutionVector<double, 16, 16>);
GPURUNTIME_BENCHMARK(convolutionVector<double, 64, 64>);
GPURUNTIME_BENCHMARK(convolutionVector<double, 64, 128>);
GPURUNTIME_BENCHMARK(convolutionVector<float2, 36, 36>);
GPURUNTIME_BENCHMARK(convolutionVector<double2, 24, 24>);

void convolutionVectorOfOneElement(benchmark::State& state) {
  DeviceArray<float> in(1), filter(1), out(1);
  measureOneElement(state, [&] {
    gpuruntime::ConvolutionVector::Invoker<float, mpl_::int_<1>>()(nullptr, out.data(), in.data(), filter.data(),
                                                                   {0, 1, 1, 0, 0, 0, true});
  });
}
GPURUNTIME_BENCHMARK_ONE(convolutionVectorOfOneElement);

}  // namespace
