#include "checking.hpp"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>
#include <vector>

namespace gpuruntime::platform::checking {
namespace {

unsigned int seed() {
  static const unsigned int value = [] {
    const char* text = std::getenv("GPURUNTIME_CHECKING_SEED");
    return text ? static_cast<unsigned int>(std::strtoul(text, nullptr, 10)) : 0U;
  }();
  return value;
}

void permute(std::vector<unsigned int>& order, unsigned long count) {
  if (order.size() == count) return;
  order.resize(count);
  std::iota(order.begin(), order.end(), 0U);
  if (seed() == 0) {
    std::reverse(order.begin(), order.end());
  } else {
    std::shuffle(order.begin(), order.end(), std::mt19937(seed()));
  }
}

}  // namespace

const unsigned int* threadOrder(unsigned long count) {
  thread_local std::vector<unsigned int> order;
  permute(order, count);
  return order.data();
}

const unsigned int* blockOrder(unsigned long count) {
  thread_local std::vector<unsigned int> order;
  permute(order, count);
  return order.data();
}

}  // namespace gpuruntime::platform::checking
