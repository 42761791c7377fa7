/// @file
/// Counts how often each element is visited.
#pragma once

#include <cstddef>
#include <vector>

#include "gtest/gtest.h"

/// One counter for each of `size` elements, between guards that nobody is to visit.
class Visits {
 public:
  explicit Visits(std::size_t size) : counts_(size + 2 * guard) {}

  unsigned char* data() { return counts_.data() + guard; }

  testing::AssertionResult each(unsigned int times) const {
    for (std::size_t i = 0; i < counts_.size(); ++i) {
      const bool isGuard = i < guard || i >= counts_.size() - guard;
      if (counts_[i] != (isGuard ? 0 : times)) {
        return testing::AssertionFailure() << (isGuard ? "guard " : "element ") << i - guard << ": " << +counts_[i];
      }
    }
    return testing::AssertionSuccess();
  }

 private:
  static constexpr std::size_t guard = 256;

  std::vector<unsigned char> counts_;
};
