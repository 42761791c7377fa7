#include "support/fma.hpp"

namespace {

using namespace benchsupport;

template <class T, unsigned long K, unsigned long side = 2048>
void convolutionSquare(benchmark::State& state) {
  DeviceArray<T> in(side, side), filter(K * K), out(side, side);
  gpuruntime::recipes::fillOnDevice(in.data(), 0x3C, in.bytes());
  gpuruntime::recipes::fillOnDevice(filter.data(), 0x3B, filter.bytes());
  const std::vector<unsigned long> size{side, side}, offsets{K / 2, K / 2};
  measureProducts<T>(state, in.size(), in.size() * K * K, [&] {
    gpuruntime::ConvolutionSquare::Invoker<T, mpl_::size_t<K>>()(nullptr, out.data(), in.data(), filter.data(), size,
                                                                 size, 0, offsets, {0, 0, 0});
  });
}
GPURUNTIME_BENCHMARK(convolutionSquare<float, 3>);
GPURUNTIME_BENCHMARK(convolutionSquare<float, 3, 8192>);
GPURUNTIME_BENCHMARK(convolutionSquare<float, 5>);
GPURUNTIME_BENCHMARK(convolutionSquare<float, 7>);
GPURUNTIME_BENCHMARK(convolutionSquare<float, 9>);
GPURUNTIME_BENCHMARK(convolutionSquare<double, 3>);
GPURUNTIME_BENCHMARK(convolutionSquare<double, 9>);
GPURUNTIME_BENCHMARK(convolutionSquare<float2, 3>);
GPURUNTIME_BENCHMARK(convolutionSquare<float2, 9>);
GPURUNTIME_BENCHMARK(convolutionSquare<double2, 7>);

}  // namespace
