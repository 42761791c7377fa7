/// @file
/// Runs the blocks of a launch on all cores.
#pragma once

namespace gpuruntime::platform {

/// Blocks [first, last) of a launch, x fastest.
struct BlockRange {
  unsigned long first;
  unsigned long last;
};

namespace detail {
void executeBlocks(unsigned long count, void (*run)(const void* body, BlockRange blocks), const void* body);
}

/// Calls body(BlockRange) until every one of `count` blocks has run once, and returns when all have.
///
/// A launch that is over within some tens of microseconds runs on the caller's thread. Of a longer one, a task takes a
/// run of blocks of about that length, as measured on the first ones.
template <class Body>
void executeBlocks(unsigned long count, const Body& body) {
  detail::executeBlocks(
      count, [](const void* typeless, BlockRange blocks) { (*static_cast<const Body*>(typeless))(blocks); }, &body);
}

}  // namespace gpuruntime::platform
