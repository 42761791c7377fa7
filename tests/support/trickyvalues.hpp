/// @file
/// Elements of every type at which conversions and comparisons go wrong.
#pragma once

#include "support/familytest.hpp"

namespace testsupport {

static_assert(std::numeric_limits<long double>::digits >= 64, "the references need every 64-bit integer exactly");

/// The value of an element; of a bool, 1 for every byte but 0.
template <class T>
long double exactValue(const T& element) {
  if constexpr (std::is_same_v<T, bool>) {
    unsigned char byte;
    std::memcpy(&byte, &element, 1);
    return byte != 0;
  } else {
    return element;
  }
}

/// True if `value` is one of the values of the numeric real type T.
template <class T>
bool isValueOf(long double value) {
  using Limits = std::numeric_limits<T>;
  if constexpr (std::is_floating_point_v<T>) return static_cast<long double>(static_cast<T>(value)) == value;
  return value == std::trunc(value) && value >= Limits::lowest() && value <= Limits::max();
}

/// The values as an array.
template <class T>
HostArray<T> arrayOf(const std::vector<T>& values) {
  HostArray<T> array(values.size());
  std::memcpy(array.data(), values.data(), values.size() * sizeof(T));
  return array;
}

/// Both ends of every integer type and 2^24, 2^53, each with its neighbours one and a half away; halves; in floating
/// types the next values on both sides of these, infinities, NaN, -0, subnormals and the ends of the type. With `few`,
/// a choice of them.
template <class T>
HostArray<T> trickyValues(bool few = false) {
  if constexpr (std::is_same_v<T, bool>) {
    HostArray<bool> bytes(4);
    const unsigned char values[] = {0, 1, 2, 255};
    std::memcpy(bytes.data(), values, sizeof values);
    return bytes;
  } else if constexpr (isComplex<T>) {
    const auto parts = trickyValues<gpuruntime::RealOf<T>>(true);
    std::vector<T> values;
    for (unsigned long i = 0; i < parts.size(); ++i) {
      for (unsigned long k = 0; k < parts.size(); ++k) values.push_back({parts[i], parts[k]});
    }
    return arrayOf(values);
  } else {
    std::vector<long double> centres{0, 0x1p24L, 0x1p53L, -0x1p53L};
    for (const int bits : {7, 8, 15, 16, 31, 32, 63, 64}) {
      centres.push_back(std::ldexp(1.0L, bits));
      centres.push_back(-std::ldexp(1.0L, bits));
    }
    if (few) centres = {0, 128, 0x1p53L, 0x1p63L};
    std::vector<T> values;
    const auto add = [&](long double value) {
      if (isValueOf<T>(value)) values.push_back(static_cast<T>(value));
    };
    for (const long double centre : centres) {
      for (const long double away : {-1.5L, -1.0L, -0.5L, 0.0L, 0.5L, 1.0L, 1.5L, 2.5L}) add(centre + away);
    }
    if constexpr (std::is_floating_point_v<T>) {
      using Limits = std::numeric_limits<T>;
      const std::vector<T> exact = values;
      for (const T value : exact) {
        if (few && std::abs(value) > 1) continue;
        values.push_back(std::nextafter(value, Limits::infinity()));
        values.push_back(std::nextafter(value, -Limits::infinity()));
      }
      for (const T value : {T(-0.0), T(0.1), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                            -Limits::quiet_NaN(), Limits::max(), Limits::lowest(), Limits::min()}) {
        values.push_back(value);
      }
    } else {
      add(std::numeric_limits<T>::max());
      add(std::numeric_limits<T>::min());
    }
    return arrayOf(values);
  }
}

/// What the C library says of an element, or of its parts.
struct Answers {
  bool zero, nan, inf;
};

template <class T>
Answers answersOf(const T& value) {
  if constexpr (isComplex<T>) {
    const Answers x = answersOf(value.x), y = answersOf(value.y);
    return {x.zero && y.zero, x.nan || y.nan, x.inf || y.inf};
  } else {
    const long double exact = exactValue(value);
    return {exact == 0, std::isnan(exact), std::isinf(exact)};
  }
}

/// The same with every NaN as one bit pattern.
template <class T>
T withPlainNaN(T value) {
  if constexpr (isComplex<T>) {
    return {withPlainNaN(value.x), withPlainNaN(value.y)};
  } else {
    return value != value ? std::numeric_limits<T>::quiet_NaN() : value;
  }
}

}  // namespace testsupport
