/// @file
/// Convolutions are held against the machine's rate of fused multiply-adds, measured in the same run.
#pragma once

#include "support/bench.hpp"

#include <chrono>
#include <thread>

namespace benchsupport {

// Chains of fused operations that stay in registers; enough of them to hide their latency.
template <class R>
#if defined(__clang__)
__attribute__((noinline)) R chainsOfFma(long turns) {
#pragma clang fp contract(fast)
#else
__attribute__((noinline, optimize("fp-contract=fast"))) R chainsOfFma(long turns) {
#endif
  typedef R Vector __attribute__((vector_size(64)));
  constexpr unsigned int chains = 12;
  Vector factor = {}, a = factor, sums[chains];
  factor += R(0.999);
  a += R(1e-3);
  // Each chain begins elsewhere, or the compiler would find them to be one.
  for (unsigned int k = 0; k < chains; ++k) sums[k] = a * R(k);
  for (long i = 0; i < turns; ++i) {
    for (unsigned int k = 0; k < chains; ++k) sums[k] = sums[k] * factor + a;
  }
  for (unsigned int k = 1; k < chains; ++k) sums[0] += sums[k];
  return sums[0][0];
}

/// Fused multiply-adds of R per second that all cores make together in registers; the best of several tries.
template <class R>
double fmaRate() {
  static const double rate = [] {
    constexpr long turns = 10'000'000;
    const unsigned int cores = std::max(1U, std::thread::hardware_concurrency());
    double best = 0;
    for (int turn = 0; turn < 5; ++turn) {
      const auto start = std::chrono::steady_clock::now();
      std::vector<std::thread> threads;
      for (unsigned int core = 0; core < cores; ++core) {
        threads.emplace_back([] { benchmark::DoNotOptimize(chainsOfFma<R>(turns)); });
      }
      for (std::thread& thread : threads) thread.join();
      const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
      best = std::max(best, 12.0 * turns * (64 / sizeof(R)) * cores / spent.count());
    }
    return best;
  }();
  return rate;
}

/// Runs `call` once an iteration and reports elements, bytes, and the fractions of copy bandwidth and of the rate of
/// fused multiply-adds that `products` products make; a complex one counts as four.
template <class T, class Call>
void measureProducts(benchmark::State& state, unsigned long elements, unsigned long products, Call call) {
  constexpr bool complex = !std::is_same_v<T, gpuruntime::RealOf<T>>;
  measure(state, elements, 2 * elements * sizeof(T), "copyFraction", copyBandwidth(), call);
  const double fused = static_cast<double>(products) * (complex ? 4 : 1) * static_cast<double>(state.iterations());
  state.counters["fmaFraction"] =
      benchmark::Counter(fused / fmaRate<gpuruntime::RealOf<T>>(), benchmark::Counter::kIsRate);
}

}  // namespace benchsupport
