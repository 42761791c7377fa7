#include "executor.hpp"

#include "checking.hpp"

#include <oneapi/tbb/blocked_range.h>
#include <oneapi/tbb/parallel_for.h>

#include <algorithm>
#include <chrono>

namespace gpuruntime::platform::detail {
namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

// Starting a task costs about a microsecond; at this length that is lost in it.
constexpr Microseconds taskLength{40};

[[maybe_unused]] void runInOtherOrder(unsigned long count, void (*run)(const void*, BlockRange), const void* body) {
  const unsigned int* order = checking::blockOrder(count);
  for (unsigned long i = 0; i < count; ++i) run(body, {order[i], order[i] + 1UL});
}

}  // namespace

void executeBlocks(unsigned long count, void (*run)(const void* body, BlockRange blocks), const void* body) {
  if constexpr (checking::enabled) return runInOtherOrder(count, run, body);
  if (count == 1) return run(body, {0, 1});

  // Runs that double in length, on this thread, until one is long enough to tell what a block costs.
  unsigned long first = 0;
  unsigned long grain = 1;
  Clock::time_point start = Clock::now();
  while (first < count) {
    const unsigned long last = std::min(count, first + grain);
    run(body, {first, last});
    const Clock::time_point end = Clock::now();
    const Microseconds spent = end - start;
    start = end;
    const auto taskBlocks = static_cast<double>(last - first) * (taskLength / spent);
    first = last;
    if (spent * 4 >= taskLength) {
      grain = taskBlocks < 1 ? 1 : static_cast<unsigned long>(taskBlocks);
      break;
    }
    grain *= 2;
  }
  if (count - first <= grain) {
    if (first < count) run(body, {first, count});
    return;
  }
  using Range = oneapi::tbb::blocked_range<unsigned long>;
  oneapi::tbb::parallel_for(Range(first, count, grain), [=](const Range& blocks) {
    run(body, {blocks.begin(), blocks.end()});
  });
}

}  // namespace gpuruntime::platform::detail
