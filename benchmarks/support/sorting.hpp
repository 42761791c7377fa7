/// @file
/// Inputs and measurement of the sort benchmarks.
#pragma once

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include "support/bench.hpp"

namespace benchsupport {

inline constexpr unsigned long sortCount = 1UL << 24;

enum class Input { random, sorted, reversed, fewValues, someNaN };

template <class T>
T elementOf(double value, [[maybe_unused]] double other) {
  if constexpr (std::is_same_v<T, double2>) {
    return {value, other};
  } else {
    return static_cast<T>(value);
  }
}

/// n elements; random ones are whole numbers of up to 52 bits, which every type holds.
template <class T>
std::vector<T> sortInput(Input input, unsigned long n = sortCount) {
  std::mt19937_64 engine(1);
  std::vector<T> data(n);
  for (unsigned long i = 0; i < n; ++i) {
    const auto up = static_cast<double>(i);
    double value = static_cast<double>(engine() >> 12), other = static_cast<double>(engine() >> 12);
    if (input == Input::sorted) value = up, other = 0;
    if (input == Input::reversed) value = static_cast<double>(n) - up, other = 0;
    if (input == Input::fewValues) value = static_cast<double>(engine() % 16), other = 1;
    if (input == Input::someNaN && engine() % 100 == 0) value = std::numeric_limits<double>::quiet_NaN();
    data[i] = elementOf<T>(value, other);
  }
  return data;
}

/// Runs `sort(data, index)` once an iteration on the input, which is copied anew while the clock stands still.
template <class T, class Sort>
void measureSort(benchmark::State& state, const std::vector<T>& input, Sort sort) {
  const unsigned long n = input.size();
  std::vector<double> places(n);
  for (unsigned long i = 0; i < n; ++i) places[i] = static_cast<double>(i + 1);
  DeviceArray<T> data(n);
  DeviceArray<double> index(n);
  for (auto _ : state) {
    state.PauseTiming();
    gpuruntime::recipes::copyToDevice(data.data(), input.data(), data.bytes());
    gpuruntime::recipes::copyToDevice(index.data(), places.data(), index.bytes());
    gpuruntime::recipes::synchronise();
    state.ResumeTiming();
    sort(data.data(), index.data());
    gpuruntime::recipes::synchronise();
  }
  state.SetItemsProcessed(static_cast<long>(n) * state.iterations());
}

}  // namespace benchsupport
