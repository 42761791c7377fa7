#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class T>
void complexCopyPad(benchmark::State& state) {
  const unsigned long inSide = largeSide - 100;
  DeviceArray<T> in(inSide, inSide);
  DeviceArray<gpuruntime::ComplexOf<T>> out(largeSide, largeSide);
  gpuruntime::recipes::fillOnDevice(in.data(), 1, in.bytes());
  measure(state, out.size(), in.bytes(), out.bytes(), [&] {
    gpuruntime::ComplexCopyPad::Invoker<T>()(nullptr, out.data(), largeSide, largeSide, in.data(), inSide, inSide);
  });
}
GPURUNTIME_BENCHMARK(complexCopyPad<float>);
GPURUNTIME_BENCHMARK(complexCopyPad<double2>);

}  // namespace
