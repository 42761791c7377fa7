#include "platform/cpu/streaming.hpp"

#include <random>
#include <vector>

#include "gtest/gtest.h"

namespace {

using namespace gpuruntime::platform;

// Runs of all lengths that follow one another or leave gaps, none of which is written.
TEST(JoinedLines, writeWhatTheyAreGivenAndNothingElse) {
  std::vector<char> source(2000 + lineBytes);
  for (std::size_t i = 0; i < source.size(); ++i) source[i] = static_cast<char>(1 + i % 251);
  std::minstd_rand next(1);
  for (int round = 0; round < 2000; ++round) {
    std::vector<char> written(20000), expected(20000);
    JoinedLines lines;
    for (unsigned long at = next() % 200; at < written.size() - 1000;) {
      const unsigned long bytes = next() % (next() % 2 == 0 ? 1000 : 70), from = next() % 1000;
      lines.append(&written[at], &source[from], bytes);
      std::copy_n(&source[from], bytes, &expected[at]);
      at += bytes + (next() % 4 == 0 ? next() % 150 : 0);
    }
    lines.finish();
    ASSERT_EQ(written, expected);
  }
}

}  // namespace
