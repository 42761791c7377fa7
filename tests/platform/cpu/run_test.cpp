#include <numeric>
#include <vector>

#include "gtest/gtest.h"
#include "platform/platform.hpp"

namespace {

using namespace gpuruntime::platform;

TEST(Run, isCopiedFromAnywhereToAnywhere) {
  const Block<> block({}, {}, {256, 1, 1});
  std::vector<unsigned char> in(4096);
  std::iota(in.begin(), in.end(), static_cast<unsigned char>(1));
  for (unsigned long live = 1; live < 3000; live += live < 150 ? 1 : 97) {
    for (const unsigned long first : {0UL, 1UL, 48UL, 63UL}) {
      for (const unsigned long count : {1UL, 1UL << 30}) {  // A small array and, as far as the run knows, a large one.
        std::vector<unsigned char> written(in.size()), expected = written;
        copyRun(block, written.data() + first, in.data() + 3, live, count);
        finishStreaming();
        std::copy_n(in.begin() + 3, live, expected.begin() + static_cast<long>(first));
        ASSERT_TRUE(written == expected) << live << " bytes at " << first << " of " << count;
      }
    }
  }
}

}  // namespace
