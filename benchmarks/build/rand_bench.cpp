#include "support/bench.hpp"

#include <random>
#include <vector>

namespace {

using namespace benchsupport;
using gpucommon::rand::MRG32K3AGenerator;
using gpucommon::rand::Philox4x32Generator;
using gpucommon::rand::ThreeFry4x64Generator;

// Key and counter of any generator; a valid state of each.
std::vector<unsigned int> someState() {
  return std::vector<unsigned int>(17, 12345);
}

template <class Family, class T>
void fill(benchmark::State& state, unsigned long count) {
  DeviceArray<T> out(count);
  std::vector<unsigned int> words = someState();
  measure(state, count, 0, out.bytes(),
          [&] { typename Family::template Invoker<T>()(nullptr, out.data(), words.data(), count); });
}

template <class G, class T>
void rand(benchmark::State& state) {
  fill<gpuruntime::Rand<G>, T>(state, largeCount);
}
template <class G, class T>
void boxMuller(benchmark::State& state) {
  fill<gpuruntime::RandNBoxMuller<G>, T>(state, largeCount);
}
template <class G, class T>
void inversion(benchmark::State& state) {
  fill<gpuruntime::RandNInversion<G>, T>(state, largeCount);
}
template <class G, class T>
void randI(benchmark::State& state) {
  DeviceArray<T> out(largeCount);
  std::vector<unsigned int> words = someState();
  measure(state, largeCount, 0, out.bytes(), [&] {
    typename gpuruntime::RandI<G>::template Invoker<T>()(nullptr, out.data(), words.data(), 1, 100, largeCount);
  });
}
// A stream that begins within a generator block.
void randFromSecondSample(benchmark::State& state) {
  DeviceArray<double> out(largeCount);
  std::vector<unsigned int> words = someState();
  gpuruntime::rand::advanceState<Philox4x32Generator>(words.data(), 1);
  measure(state, largeCount, 0, out.bytes(), [&] {
    gpuruntime::Rand<Philox4x32Generator>::Invoker<double>()(nullptr, out.data(), words.data(), largeCount);
  });
}
template <class G>
void randOfOneElement(benchmark::State& state) {
  DeviceArray<double> out(1);
  std::vector<unsigned int> words = someState();
  measureOneElement(
      state, [&] { typename gpuruntime::Rand<G>::template Invoker<double>()(nullptr, out.data(), words.data(), 1); });
}

// Baseline: the standard library on one core.
template <class Engine, class Distribution>
void standardLibrary(benchmark::State& state) {
  std::vector<typename Distribution::result_type> out(largeCount);
  Engine engine;
  Distribution distribution;
  measure(state, largeCount, 0, out.size() * sizeof(out[0]), [&] {
    for (auto& value : out) value = distribution(engine);
  });
}

using Engine = std::mt19937_64;
GPURUNTIME_BENCHMARK(standardLibrary<Engine, std::uniform_real_distribution<double>>);
GPURUNTIME_BENCHMARK(standardLibrary<Engine, std::uniform_real_distribution<float>>);
GPURUNTIME_BENCHMARK(standardLibrary<Engine, std::normal_distribution<double>>);
GPURUNTIME_BENCHMARK(rand<Philox4x32Generator, double>);
GPURUNTIME_BENCHMARK(rand<Philox4x32Generator, float>);
GPURUNTIME_BENCHMARK(randFromSecondSample);
GPURUNTIME_BENCHMARK(rand<ThreeFry4x64Generator, double>);
GPURUNTIME_BENCHMARK(rand<ThreeFry4x64Generator, float>);
GPURUNTIME_BENCHMARK(rand<MRG32K3AGenerator, double>);
GPURUNTIME_BENCHMARK(rand<MRG32K3AGenerator, float>);
GPURUNTIME_BENCHMARK(boxMuller<Philox4x32Generator, double>);
GPURUNTIME_BENCHMARK(boxMuller<ThreeFry4x64Generator, double>);
GPURUNTIME_BENCHMARK(boxMuller<ThreeFry4x64Generator, float>);
GPURUNTIME_BENCHMARK(inversion<Philox4x32Generator, double>);
GPURUNTIME_BENCHMARK(inversion<ThreeFry4x64Generator, double>);
GPURUNTIME_BENCHMARK(inversion<MRG32K3AGenerator, double>);
GPURUNTIME_BENCHMARK(randI<Philox4x32Generator, double>);
GPURUNTIME_BENCHMARK(randI<Philox4x32Generator, int>);
GPURUNTIME_BENCHMARK(randI<Philox4x32Generator, unsigned char>);
GPURUNTIME_BENCHMARK(randI<MRG32K3AGenerator, int>);

GPURUNTIME_BENCHMARK_ONE(randOfOneElement<Philox4x32Generator>);
GPURUNTIME_BENCHMARK_ONE(randOfOneElement<ThreeFry4x64Generator>);
GPURUNTIME_BENCHMARK_ONE(randOfOneElement<MRG32K3AGenerator>);

}  // namespace
