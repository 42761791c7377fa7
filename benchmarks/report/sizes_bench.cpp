#include "support/bench.hpp"

namespace {

using namespace benchsupport;
using gpucommon::rand::Philox4x32Generator;

unsigned long size(const benchmark::State& state) {
  return static_cast<unsigned long>(state.range(0));
}

template <class T>
DeviceArray<T> filledArray(unsigned long n) {
  DeviceArray<T> array(n);
  gpuruntime::recipes::fillOnDevice(array.data(), 0x3C, array.bytes());
  return array;
}

DeviceArray<double> randomArray(unsigned long n) {
  DeviceArray<double> array(n);
  std::vector<unsigned int> words(7, 12345);
  gpuruntime::Rand<Philox4x32Generator>::Invoker<double>()(nullptr, array.data(), words.data(), n);
  return array;
}

void copySizes(benchmark::State& state) {
  const DeviceArray<double> in = filledArray<double>(size(state));
  DeviceArray<double> out(in.size());
  measure(state, in.size(), in.bytes(), out.bytes(),
          [&] { gpuruntime::recipes::copyOnDevice(out.data(), in.data(), in.bytes()); });
}

void colonSizes(benchmark::State& state) {
  DeviceArray<double> out(size(state));
  const auto last = static_cast<double>(out.size() - 1);
  measure(state, out.size(), 0, out.bytes(),
          [&] { gpuruntime::Colon::Invoker<double>()(nullptr, out.size(), out.data(), 0, 1, last); });
}

void castSizes(benchmark::State& state) {
  const DeviceArray<double> in = filledArray<double>(size(state));
  DeviceArray<float> out(in.size());
  measure(state, in.size(), in.bytes(), out.bytes(),
          [&] { gpuruntime::CastToReal::Invoker<float, double>()(nullptr, in.size(), out.data(), in.data()); });
}

void sumSizes(benchmark::State& state) {
  const DeviceArray<double> in = filledArray<double>(size(state));
  DeviceArray<double> out(1);
  measureReading(state, in.size(), in.bytes(), 0, [&] {
    gpuruntime::SumNative::Invoker<double>()(nullptr, out.data(), in.data(), in.size(), in.size(), 1);
  });
}

void cumSumSizes(benchmark::State& state) {
  DeviceArray<double> data(size(state)), total(1);
  gpuruntime::recipes::fillOnDevice(data.data(), 0, data.bytes());
  measure(state, data.size(), data.bytes(), data.bytes(), [&] {
    gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), data.data(), data.size(), data.size(), 1);
  });
}

// As square as a power of two allows.
void transposeSizes(benchmark::State& state) {
  unsigned long rows = 1;
  while (rows * rows < size(state)) rows *= 2;
  const DeviceArray<double> in = filledArray<double>(size(state));
  DeviceArray<double> out(in.size());
  measure(state, in.size(), in.bytes(), out.bytes(),
          [&] { gpuruntime::Transpose::Invoker<double>()(nullptr, out.data(), in.data(), rows, in.size() / rows); });
}

void sortSizes(benchmark::State& state) {
  const DeviceArray<double> input = randomArray(size(state));
  DeviceArray<double> data(input.size());
  for (auto _ : state) {
    state.PauseTiming();
    gpuruntime::recipes::copyOnDevice(data.data(), input.data(), input.bytes());
    gpuruntime::recipes::synchronise();
    state.ResumeTiming();
    gpuruntime::SortVector::Invoker<double>()(data.data(), nullptr, data.size(), true);
    gpuruntime::recipes::synchronise();
  }
  state.SetItemsProcessed(state.range(0) * state.iterations());
}

// Each element once; the places are the states of a congruential generator, whose period is their number.
void gatherSizes(benchmark::State& state) {
  std::vector<double> places(size(state));
  unsigned long place = 1;
  for (double& entry : places) {
    entry = static_cast<double>(place + 1);
    place = (place * 1664525 + 1013904223) % places.size();
  }
  const DeviceArray<double> in = filledArray<double>(places.size()), index(places);
  DeviceArray<double> out(in.size());
  measure(state, in.size(), in.bytes() + index.bytes(), out.bytes(), [&] {
    gpuruntime::Subsref3D<const double*, void*, void*>::Invoker<double>()(
        nullptr, in.size(), out.data(), in.data(), in.size(), in.size(), index.data(), 1, 1, nullptr, 1, 1, nullptr);
  });
}

void interpolationSizes(benchmark::State& state) {
  constexpr unsigned long points = 1000;
  DeviceArray<double> grid(points), out(size(state));
  gpuruntime::Linspace::Invoker<double>()(nullptr, points, grid.data(), 0, 1);
  const DeviceArray<double> values = randomArray(points), queries = randomArray(size(state));
  measure(state, out.size(), queries.bytes(), out.bytes(), [&] {
    gpuruntime::Interp1dFull::Invoker<double, double, double>()(
        nullptr, out.data(), grid.data(), values.data(), queries.data(), points, out.size(),
        gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant, 0.0);
  });
}

void convolutionSizes(benchmark::State& state) {
  constexpr unsigned long taps = 16;
  const DeviceArray<float> in = filledArray<float>(size(state)), filter = filledArray<float>(taps);
  DeviceArray<float> out(in.size());
  const unsigned long n = in.size();
  measure(state, n, in.bytes(), out.bytes(), [&] {
    gpuruntime::ConvolutionVector::Invoker<float, mpl_::int_<taps>>()(nullptr, out.data(), in.data(), filter.data(),
                                                                      {0, n, n, 0, 0, 0, true});
  });
}

}  // namespace

#define GPURUNTIME_BENCHMARK_SIZES(function) \
  GPURUNTIME_BENCHMARK(function)->RangeMultiplier(4)->Range(1L << 10, 1L << 27)
GPURUNTIME_BENCHMARK_SIZES(copySizes);
GPURUNTIME_BENCHMARK_SIZES(colonSizes);
GPURUNTIME_BENCHMARK_SIZES(castSizes);
GPURUNTIME_BENCHMARK_SIZES(sumSizes);
GPURUNTIME_BENCHMARK_SIZES(cumSumSizes);
GPURUNTIME_BENCHMARK_SIZES(transposeSizes);
GPURUNTIME_BENCHMARK_SIZES(sortSizes);
GPURUNTIME_BENCHMARK_SIZES(gatherSizes);
GPURUNTIME_BENCHMARK_SIZES(interpolationSizes);
GPURUNTIME_BENCHMARK_SIZES(convolutionSizes);
