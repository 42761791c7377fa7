/// @file
/// What tests of families share: type lists, arrays with guards around them, and comparison by bits.
#pragma once

#include <gtest/gtest.h>
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace testsupport {

template <class List>
struct TestTypesOf;
template <class... Types>
struct TestTypesOf<gpuruntime::TypeList<Types...>> {
  using type = ::testing::Types<Types...>;
};

/// The members of a family's list, for typed tests.
template <class List>
using TestTypes = typename TestTypesOf<List>::type;

template <class T>
inline constexpr bool isComplex = gpuruntime::detail::IsMember<T, gpuruntime::ComplexTypes>::value;

/// A vector of T; of bool too it has its elements side by side, one byte each.
template <class T>
class HostArray {
 public:
  explicit HostArray(unsigned long size) : bytes_(size * sizeof(T)) {}

  unsigned long size() const { return bytes_.size() / sizeof(T); }
  T* data() { return reinterpret_cast<T*>(bytes_.data()); }
  const T* data() const { return reinterpret_cast<const T*>(bytes_.data()); }
  T& operator[](unsigned long i) { return data()[i]; }
  const T& operator[](unsigned long i) const { return data()[i]; }

  /// Every byte differs from its neighbours', so that no element is taken for another. A bool holds 0 or 1.
  static HostArray counting(unsigned long size, unsigned int seed = 1) {
    HostArray array(size);
    std::minstd_rand next(seed);
    for (unsigned char& byte : array.bytes_) byte = static_cast<unsigned char>(next() >> 7);
    if (std::is_same_v<T, bool>) {
      for (unsigned char& byte : array.bytes_) byte &= 1;
    }
    return array;
  }

 private:
  // The default alignment of new serves every element type.
  std::vector<unsigned char> bytes_;
};

/// A device array whose elements and guards on both sides hold a marker. `offset` elements stand in front of it beside
/// the guard, so that it begins at any multiple of its element's size.
template <class T>
class GuardedArray {
 public:
  static constexpr unsigned char marker = 0xA5;

  explicit GuardedArray(unsigned long size, unsigned long offset = 0)
      : size_(size), front_(guard + offset), memory_(front_ + size + guard) {
    gpuruntime::recipes::fillOnDevice(memory_.data(), marker, memory_.bytes());
  }
  explicit GuardedArray(const HostArray<T>& host, unsigned long offset = 0) : GuardedArray(host.size(), offset) {
    gpuruntime::recipes::copyToDevice(data(), host.data(), size_ * sizeof(T));
    gpuruntime::recipes::synchronise();
  }

  T* data() { return memory_.data() + front_; }
  const T* data() const { return memory_.data() + front_; }

  /// The elements; fails the test where a guard was written.
  HostArray<T> toHost() const {
    gpuruntime::recipes::synchronise();
    HostArray<T> all(memory_.size());
    memory_.copyTo(all.data(), memory_.size());
    const auto* bytes = reinterpret_cast<const unsigned char*>(all.data());
    for (unsigned long i = 0; i < memory_.bytes(); ++i) {
      const unsigned long element = i / sizeof(T);
      const bool isGuard = element < front_ || element >= front_ + size_;
      if (isGuard && bytes[i] != marker) {
        ADD_FAILURE() << "wrote outside the array, " << static_cast<long>(element - front_)
                      << " elements from its start";
        break;
      }
    }
    HostArray<T> own(size_);
    if (size_ > 0) std::memcpy(own.data(), all.data() + front_, size_ * sizeof(T));
    return own;
  }

 private:
  static constexpr unsigned long guard = 64;

  unsigned long size_;
  unsigned long front_;
  gpuruntime::recipes::DeviceArray<T> memory_;
};

template <class T>
bool sameBits(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <class T>
std::string inWords(const T& value) {
  if constexpr (isComplex<T>) {
    return "(" + inWords(value.x) + ", " + inWords(value.y) + ")";
  } else {
    char text[64];
    if constexpr (std::is_floating_point_v<T>) {
      std::snprintf(text, sizeof text, "%.17g", static_cast<double>(value));
    } else {
      std::snprintf(text, sizeof text, "%s", std::to_string(value).c_str());
    }
    return text;
  }
}

/// Fails the test at the first element whose bits differ from those of `expected(i)`.
template <class T, class Expected>
void expectElements(const HostArray<T>& actual, Expected expected, const std::string& context = "") {
  for (unsigned long i = 0; i < actual.size(); ++i) {
    const T wanted = expected(i);
    if (!sameBits(actual[i], wanted)) {
      ADD_FAILURE() << context << ": element " << i << " of " << actual.size() << " is " << inWords(actual[i])
                    << ", expected " << inWords(wanted);
      return;
    }
  }
}

/// True if element i still holds the marker of an array that nobody wrote.
template <class T>
bool isUntouched(const HostArray<T>& array, unsigned long i) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(array.data()) + i * sizeof(T);
  return std::all_of(bytes, bytes + sizeof(T), [](unsigned char byte) { return byte == GuardedArray<T>::marker; });
}

template <class T>
void expectUntouched(const HostArray<T>& array) {
  for (unsigned long i = 0; i < array.size(); ++i) EXPECT_TRUE(isUntouched(array, i)) << "element " << i;
}

/// Sizes around the block, several blocks, and enough for more than one task and for writes past the caches.
inline const std::vector<unsigned long>& elementwiseSizes() {
  static const std::vector<unsigned long> sizes{0, 1, 2, 3, 255, 256, 257, 1000, 4099, 4200003};
  return sizes;
}

}  // namespace testsupport
