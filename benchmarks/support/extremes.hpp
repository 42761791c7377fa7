/// @file
/// What the benchmarks of extremes read.
#pragma once

#include <type_traits>
#include <vector>

#include "support/bench.hpp"

namespace benchsupport {

/// Complex elements are random: their order costs most where each is compared in earnest.
template <class T>
void fill(DeviceArray<T>& array) {
  gpuruntime::recipes::fillOnDevice(array.data(), 0x41, array.bytes());
  if constexpr (std::is_same_v<T, double2>) {
    std::vector<unsigned int> words(17, 12345);
    gpuruntime::Rand<gpucommon::rand::Philox4x32Generator>::Invoker<double>()(
        nullptr, reinterpret_cast<double*>(array.data()), words.data(), 2 * array.size());
  }
}

}  // namespace benchsupport
