#include "support/bench.hpp"

namespace {

using namespace benchsupport;

// Half of the input is read, and all of the output written.
template <class Family, class T>
void triangle(benchmark::State& state, unsigned long side, bool inPlace) {
  DeviceArray<T> in(side, side), out(side, side);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  T* const target = inPlace ? in.data() : out.data();
  measure(state, side * side, in.bytes() / 2, out.bytes(),
          [&] { typename Family::template Invoker<T>()(nullptr, target, in.data(), 0, side, side); });
}

template <class T>
void triLower(benchmark::State& state) {
  triangle<gpuruntime::TriLower, T>(state, largeSide, false);
}
GPURUNTIME_BENCHMARK(triLower<double>);
GPURUNTIME_BENCHMARK(triLower<unsigned char>);
GPURUNTIME_BENCHMARK(triLower<float>);
GPURUNTIME_BENCHMARK(triLower<double2>);

void triUpper(benchmark::State& state) {
  triangle<gpuruntime::TriUpper, double>(state, largeSide, false);
}
void triLowerInPlace(benchmark::State& state) {
  triangle<gpuruntime::TriLower, double>(state, largeSide, true);
}
void triLowerOneOnDiag(benchmark::State& state) {
  triangle<gpuruntime::TriLowerOneOnDiag, double>(state, largeSide, false);
}
GPURUNTIME_BENCHMARK(triUpper);
GPURUNTIME_BENCHMARK(triLowerInPlace);
GPURUNTIME_BENCHMARK(triLowerOneOnDiag);

}  // namespace
