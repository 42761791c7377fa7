#include "support/indexing.hpp"

namespace {

using namespace benchsupport;

void indexValidation(benchmark::State& state) {
  const DeviceArray<double> in = filledArray<double>(indexCount);
  DeviceArray<bool> out(indexCount);
  measure(state, indexCount, in.bytes(), out.bytes(),
          [&] { gpuruntime::IndexValidation::Invoker<double>()(nullptr, indexCount, out.data(), in.data()); });
}
GPURUNTIME_BENCHMARK(indexValidation);

}  // namespace
