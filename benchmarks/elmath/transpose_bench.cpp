#include "support/bench.hpp"

namespace {

using namespace benchsupport;

template <class Family, class T>
void turned(benchmark::State& state, unsigned long side, bool inPlace) {
  DeviceArray<T> in(side, side), out(side, side);
  gpuruntime::recipes::fillOnDevice(in.data(), 7, in.bytes());
  T* const target = inPlace ? in.data() : out.data();
  measure(state, side * side, in.bytes(), in.bytes(),
          [&] { typename Family::template Invoker<T>()(nullptr, target, in.data(), side, side); });
}

template <class T>
void transpose(benchmark::State& state) {
  turned<gpuruntime::Transpose, T>(state, largeSide, false);
}
GPURUNTIME_BENCHMARK(transpose<double>);
GPURUNTIME_BENCHMARK(transpose<unsigned char>);
GPURUNTIME_BENCHMARK(transpose<short>);
GPURUNTIME_BENCHMARK(transpose<float>);
GPURUNTIME_BENCHMARK(transpose<double2>);

// Columns that begin anywhere in a cache line.
void transposeOfOddSide(benchmark::State& state) {
  turned<gpuruntime::Transpose, double>(state, largeSide - 1, false);
}
void transposeInPlace(benchmark::State& state) {
  turned<gpuruntime::Transpose, double>(state, largeSide, true);
}
void ctransposeDouble2(benchmark::State& state) {
  turned<gpuruntime::CTranspose, double2>(state, largeSide, false);
}
GPURUNTIME_BENCHMARK(transposeOfOddSide);
GPURUNTIME_BENCHMARK(transposeInPlace);
GPURUNTIME_BENCHMARK(ctransposeDouble2);

void transposeOfOneElement(benchmark::State& state) {
  DeviceArray<double> in(1), out(1);
  measureOneElement(state, [&] { gpuruntime::Transpose::Invoker<double>()(nullptr, out.data(), in.data(), 1, 1); });
}
GPURUNTIME_BENCHMARK_ONE(transposeOfOneElement);

}  // namespace
