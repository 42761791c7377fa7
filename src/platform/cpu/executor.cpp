#include "executor.hpp"

#include "checking.hpp"

#include <oneapi/tbb/blocked_range.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/task_arena.h>

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

bool isWorthSharing(unsigned long blocks, unsigned long threads, unsigned long elementBytes, RowRange rows) {
  constexpr unsigned long longBytes = 1UL << 20;
  const unsigned long bytes = (rows.last - rows.first) * threads * elementBytes;
  return bytes >= longBytes && blocks < 4 * static_cast<unsigned long>(oneapi::tbb::this_task_arena::max_concurrency());
}

void shareRows(unsigned long threads, unsigned long elementBytes, RowRange rows,
               void (*run)(const void* body, ThreadRange threads, RowRange rows), const void* body) {
  // One core reads whole rows, in the order of memory; several read a part of each row, which disturbs the prefetching.
  // Which is faster depends on the work and on the machine. So of every so many bands of rows two are timed, one each
  // way. Bands also keep the cores together: what one of them fetches too early serves the others.
  constexpr unsigned long bandBytes = 1UL << 21, trialEvery = 32, lineBytes = 64;
  const unsigned long band = std::max(64UL, bandBytes / (threads * elementBytes));
  const auto cores = static_cast<unsigned long>(oneapi::tbb::this_task_arena::max_concurrency());
  const unsigned long perLine = std::max(1UL, lineBytes / elementBytes);
  const unsigned long lines = (threads + perLine - 1) / perLine;
  const unsigned long grain = (lines + cores - 1) / cores * perLine;
  const unsigned long parts = (threads + grain - 1) / grain;
  Clock::duration alone{}, shared{};
  unsigned long number = 0;
  for (unsigned long row = rows.first; row < rows.last; row += band, ++number) {
    const RowRange part{row, std::min(rows.last, row + band)};
    const unsigned long trial = number % trialEvery;
    const Clock::time_point start = Clock::now();
    if (trial == 1 || (trial > 1 && alone < shared)) {
      run(body, {0, threads}, part);
      if (trial == 1) alone = Clock::now() - start;
    } else {
      oneapi::tbb::parallel_for(0UL, parts, [=](unsigned long p) {
        run(body, {p * grain, std::min(threads, (p + 1) * grain)}, part);
      });
      if (trial == 0) shared = Clock::now() - start;
    }
  }
}

}  // namespace gpuruntime::platform::detail
