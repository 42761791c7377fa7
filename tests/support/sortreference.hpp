/// @file
/// What the sorts are to give, by a stable sort of positions with the order written out; and inputs that tell faults.
#pragma once

#include <functional>

#include "support/complexorder.hpp"
#include "support/familytest.hpp"

namespace testsupport {

template <class T>
bool hasNaN(const T& value) {
  if constexpr (isComplex<T>) {
    return value.x != value.x || value.y != value.y;
  } else {
    return value != value;
  }
}

/// True if a comes before b in ascending order; neither is NaN.
template <class T>
bool comesFirst(const T& a, const T& b, bool zerosByBits) {
  if constexpr (isComplex<T>) {
    return complexOrder(a, b) > 0;
  } else if constexpr (std::is_floating_point_v<T>) {
    return a < b || (zerosByBits && a == b && std::signbit(a) && !std::signbit(b));
  } else {
    return a < b;
  }
}

/// The positions of the elements in the order in which they are to come out: columns by ascending key, each sorted.
template <class T>
std::vector<unsigned long> sortedPositions(const HostArray<T>& data, const HostArray<int>& keys, bool zerosByBits,
                                           bool ascending) {
  std::vector<unsigned long> positions(data.size());
  for (unsigned long i = 0; i < positions.size(); ++i) positions[i] = i;
  std::stable_sort(positions.begin(), positions.end(), [&](unsigned long i, unsigned long k) {
    if (keys[i] != keys[k]) return keys[i] < keys[k];
    const bool iIsNaN = hasNaN(data[i]), kIsNaN = hasNaN(data[k]);
    if (iIsNaN || kIsNaN) return iIsNaN != kIsNaN && kIsNaN == ascending;
    return ascending ? comesFirst(data[i], data[k], zerosByBits) : comesFirst(data[k], data[i], zerosByBits);
  });
  return positions;
}

template <class T>
T elementOf(long long re, [[maybe_unused]] long long im) {
  if constexpr (isComplex<T>) {
    return {static_cast<decltype(T::x)>(re), static_cast<decltype(T::x)>(im)};
  } else {
    return static_cast<T>(re);
  }
}

/// Vectors of n elements: few distinct values, with zeros of both signs; sorted ones, both ways; any values of any
/// size; and, in floating types, extremes and NaNs with payloads among them.
template <class T>
std::vector<HostArray<T>> sortInputs(unsigned long n) {
  std::mt19937_64 engine(n);
  std::vector<HostArray<T>> inputs;
  const auto add = [&](const std::function<T(unsigned long)>& element) {
    HostArray<T> input(n);
    for (unsigned long i = 0; i < n; ++i) input[i] = element(i);
    inputs.push_back(input);
  };
  const auto small = [&] { return static_cast<long long>(engine() % 11) - 5; };
  // Draws stand in statements of their own: the order in which arguments are evaluated is the compiler's.
  add([&](unsigned long) {
    const long long im = small(), re = small();
    return elementOf<T>(re, im);
  });
  add([&](unsigned long i) { return elementOf<T>(static_cast<long long>(i / 3), 1); });
  add([&](unsigned long i) { return elementOf<T>(static_cast<long long>((n - i) / 3), 1); });
  if constexpr (std::is_integral_v<T>) {
    add([&](unsigned long) { return static_cast<T>(engine()); });
  } else {
    using R = gpuruntime::RealOf<T>;
    using Limits = std::numeric_limits<R>;
    const auto part = [&](bool withNaN) -> R {
      const R specials[] = {R(-0.0),
                            0,
                            Limits::infinity(),
                            -Limits::infinity(),
                            Limits::max(),
                            Limits::lowest(),
                            Limits::denorm_min(),
                            -Limits::denorm_min()};
      const auto choice = engine() % 40;
      if (choice < 8) return specials[choice];
      if (choice == 8 && withNaN) {
        std::uint64_t bits = 0x7FF8000000000000 | (engine() & 0x8000000000FFFFFF);
        R value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
      }
      const int exponent = static_cast<int>(engine() % 80) - 40;
      return std::ldexp(static_cast<R>(engine() % 1000003) - R(500000.5), exponent);
    };
    for (const bool withNaN : {false, true}) {
      add([&](unsigned long) {
        const R re = part(withNaN), im = part(withNaN);
        T value{};
        std::memcpy(&value, &re, sizeof re);
        if constexpr (isComplex<T>) value.y = im;
        return value;
      });
    }
    add([](unsigned long) {
      T value{};
      std::memset(&value, 0xFF, sizeof value);
      return value;
    });
  }
  return inputs;
}

/// Sizes around those at which a sort is shared out among the cores, and below.
inline const std::vector<unsigned long>& sortSizes() {
  static const std::vector<unsigned long> sizes{0, 1, 2, 33, 1000, 270001};
  return sizes;
}

}  // namespace testsupport
