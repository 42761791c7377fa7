#include <random>

#include "support/bench.hpp"

namespace {

using namespace benchsupport;

constexpr unsigned long queries = 1UL << 22, values = 1UL << 20;

/// Random whole numbers below twice the number of values, so that about a third of the queries are members.
template <class T>
DeviceArray<T> randomNumbers(unsigned long n, unsigned int seed) {
  std::vector<T> host(n);
  std::mt19937 engine(seed);
  for (T& x : host) x = static_cast<T>(engine() % (2 * values));
  DeviceArray<T> array(n);
  gpuruntime::recipes::copyToDevice(array.data(), host.data(), array.bytes());
  return array;
}

// The search alone, or with the sort of B in front of it, as callers run it.
template <class T, bool WHOLE_CHAIN>
void isMember2Arg(benchmark::State& state) {
  const DeviceArray<T> A = randomNumbers<T>(queries, 1);
  const DeviceArray<double> unsorted = randomNumbers<double>(values, 2);
  DeviceArray<double> B(values), indexB(values), location(queries);
  DeviceArray<bool> member(queries);
  const auto sort = [&] {
    gpuruntime::recipes::copyOnDevice(B.data(), unsorted.data(), B.bytes());
    gpuruntime::IntColon::Invoker<double>()(nullptr, values, indexB.data(), 1, 1);
    gpuruntime::SortVector::Invoker<double>()(B.data(), indexB.data(), values, true);
  };
  sort();
  measure(state, queries, A.bytes() + B.bytes(), member.bytes() + location.bytes(), [&] {
    if (WHOLE_CHAIN) sort();
    gpuruntime::IsMember2Arg::Invoker<T>()(nullptr, A.data(), queries, B.data(), values, indexB.data(), member.data(),
                                           location.data());
  });
}
GPURUNTIME_BENCHMARK(isMember2Arg<double, true>);
GPURUNTIME_BENCHMARK(isMember2Arg<int, true>);
GPURUNTIME_BENCHMARK(isMember2Arg<double, false>);
GPURUNTIME_BENCHMARK(isMember2Arg<float, false>);
GPURUNTIME_BENCHMARK(isMember2Arg<int, false>);

void isMember1Arg(benchmark::State& state) {
  const DeviceArray<double> A = randomNumbers<double>(queries, 1);
  DeviceArray<double> B = randomNumbers<double>(values, 2);
  DeviceArray<bool> member(queries);
  gpuruntime::SortVector::Invoker<double>()(B.data(), nullptr, values, true);
  measure(state, queries, A.bytes() + B.bytes(), member.bytes(),
          [&] { gpuruntime::IsMember1Arg::Invoker<double>()(A.data(), queries, B.data(), values, member.data()); });
}
GPURUNTIME_BENCHMARK(isMember1Arg);

}  // namespace
