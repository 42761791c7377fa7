/// @file
/// Runs the blocks of a launch on all cores.
#pragma once

namespace gpuruntime::platform {

/// Blocks [first, last) of a launch, x fastest.
struct BlockRange {
  unsigned long first;
  unsigned long last;
};

/// Threads [first, last) of a block.
struct ThreadRange {
  unsigned long first;
  unsigned long last;
};

/// Rows [first, last) of a matrix, one element a thread.
struct RowRange {
  unsigned long first;
  unsigned long last;
};

namespace detail {
void executeBlocks(unsigned long count, void (*run)(const void* body, BlockRange blocks), const void* body);
bool isWorthSharing(unsigned long blocks, unsigned long threads, unsigned long elementBytes, RowRange rows);
void shareRows(unsigned long threads, unsigned long elementBytes, RowRange rows,
               void (*run)(const void* body, ThreadRange threads, RowRange rows), const void* body);
}  // namespace detail

/// Calls body(BlockRange) until every one of `count` blocks has run once, and returns when all have.
///
/// A launch that is over within some tens of microseconds runs on the caller's thread. Of a longer one, a task takes a
/// run of blocks of about that length, as measured on the first ones.
template <class Body>
void executeBlocks(unsigned long count, const Body& body) {
  detail::executeBlocks(
      count, [](const void* typeless, BlockRange blocks) { (*static_cast<const Body*>(typeless))(blocks); }, &body);
}

/// Calls body(ThreadRange, RowRange) until every thread of a block has run once for every row, in order, and returns
/// when all have.
///
/// Where a launch has too few blocks for all cores, the threads of a long block are shared out among them, in ranges
/// that fill cache lines.
template <class Body>
void shareRows(unsigned long blocks, unsigned long threads, unsigned long elementBytes, RowRange rows,
               const Body& body) {
  const auto run = [](const void* typeless, ThreadRange range, RowRange part) __attribute__((flatten)) {
    (*static_cast<const Body*>(typeless))(range, part);
  };
  if (detail::isWorthSharing(blocks, threads, elementBytes, rows)) {
    detail::shareRows(threads, elementBytes, rows, run, &body);
  } else {
    run(&body, {0, threads}, rows);
  }
}

}  // namespace gpuruntime::platform
