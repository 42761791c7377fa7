/// @file
/// Shared base of the benchmarks: every family is called through its public interface and held against what the machine
/// moves in the same run.
#pragma once

#include <benchmark/benchmark.h>
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

namespace benchsupport {

using gpuruntime::recipes::DeviceArray;

/// Number of elements of the large one-dimensional cases, and side of the large square matrices.
inline constexpr unsigned long largeCount = 1UL << 26;
inline constexpr unsigned long largeSide = 8192;

/// Bytes per second of this machine, measured at first use: all cores fill by memset, and copy by memcpy (bytes read
/// and written counted). On a device: its memset and its device-to-device copy.
double fillBandwidth();
double copyBandwidth();

/// Bytes per second that all cores, or a device, read when they do no more than look for a NaN, by CheckNaN.
double readBandwidth();

/// Runs `call` once an iteration, waiting for the stream, and reports `bytes` and elements, and the fraction of the
/// machine's bandwidth that the bytes make.
template <class Call>
void measure(benchmark::State& state, unsigned long elements, unsigned long bytes, const char* fraction, double machine,
             Call call) {
  call();
  gpuruntime::recipes::synchronise();
  for (auto _ : state) {
    call();
    gpuruntime::recipes::synchronise();
  }
  const auto iterations = static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<long>(static_cast<double>(bytes) * iterations));
  state.SetItemsProcessed(static_cast<long>(static_cast<double>(elements) * iterations));
  state.counters[fraction] =
      benchmark::Counter(static_cast<double>(bytes) * iterations / machine, benchmark::Counter::kIsRate);
}

/// The same, held against fill bandwidth (nothing read) or copy bandwidth.
template <class Call>
void measure(benchmark::State& state, unsigned long elements, unsigned long bytesRead, unsigned long bytesWritten,
             Call call) {
  if (bytesRead == 0) {
    measure(state, elements, bytesWritten, "fillFraction", fillBandwidth(), call);
  } else {
    measure(state, elements, bytesRead + bytesWritten, "copyFraction", copyBandwidth(), call);
  }
}

/// The same, held against read bandwidth: for calls that write little.
template <class Call>
void measureReading(benchmark::State& state, unsigned long elements, unsigned long bytesRead,
                    unsigned long bytesWritten, Call call) {
  measure(state, elements, bytesRead + bytesWritten, "readFraction", readBandwidth(), call);
}

/// Runs `call` once an iteration on one element: what a call costs by itself.
template <class Call>
void measureOneElement(benchmark::State& state, Call call) {
  for (auto _ : state) call();
  gpuruntime::recipes::synchronise();
}

}  // namespace benchsupport

// Five repetitions, of which the median and the spread are printed, and all are written to a file; wall-clock time,
// since all cores work.
#define GPURUNTIME_BENCHMARK(...) \
  BENCHMARK(__VA_ARGS__)->UseRealTime()->Repetitions(5)->DisplayAggregatesOnly(true)->Unit(benchmark::kMillisecond)
#define GPURUNTIME_BENCHMARK_ONE(...) \
  BENCHMARK(__VA_ARGS__)->UseRealTime()->Repetitions(5)->DisplayAggregatesOnly(true)->Unit(benchmark::kNanosecond)
