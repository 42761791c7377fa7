#include <random>

#include "support/bench.hpp"

namespace {

using namespace benchsupport;

constexpr unsigned long queries = 1UL << 22, values = 1UL << 20;

DeviceArray<double2> randomPairs(unsigned long n, unsigned int seed, unsigned int distinct) {
  std::vector<double2> host(n);
  std::mt19937 engine(seed);
  for (double2& z : host) z = {static_cast<double>(engine() % distinct), static_cast<double>(engine() % 1000)};
  DeviceArray<double2> array(n);
  gpuruntime::recipes::copyToDevice(array.data(), host.data(), array.bytes());
  return array;
}

// DISTINCT real parts: with few of them the imaginary parts decide.
template <unsigned int DISTINCT>
void isMember2ArgCmplx(benchmark::State& state) {
  const DeviceArray<double2> A = randomPairs(queries, 1, DISTINCT), B = randomPairs(values, 2, DISTINCT);
  DeviceArray<double> location(queries);
  DeviceArray<bool> member(queries);
  measure(state, queries, A.bytes() + B.bytes(), member.bytes() + location.bytes(), [&] {
    gpuruntime::IsMember2ArgCmplx::Invoker<double2>()(nullptr, A.data(), queries, B.data(), values, member.data(),
                                                      location.data());
  });
}
GPURUNTIME_BENCHMARK(isMember2ArgCmplx<(1U << 20)>);
GPURUNTIME_BENCHMARK(isMember2ArgCmplx<4>);

void isMember1ArgCmplx(benchmark::State& state) {
  const DeviceArray<double2> A = randomPairs(queries, 1, 1U << 20), B = randomPairs(values, 2, 1U << 20);
  DeviceArray<bool> member(queries);
  measure(state, queries, A.bytes() + B.bytes(), member.bytes(), [&] {
    gpuruntime::IsMember1ArgCmplx::Invoker<double2>()(nullptr, A.data(), queries, B.data(), values, member.data());
  });
}
GPURUNTIME_BENCHMARK(isMember1ArgCmplx);

}  // namespace
