/// @file
/// Values and comparisons that the tests of scalar functions share.
#pragma once

#include <gpuruntime/elementtypes.hpp>

#include <cmath>
#include <limits>
#include <vector>

__extension__ typedef __int128 Exact;
__extension__ typedef unsigned __int128 ExactModulo;

inline constexpr double inf = std::numeric_limits<double>::infinity();
inline constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
bool isInRange(Exact value) {
  return value >= Exact(std::numeric_limits<T>::min()) && value <= Exact(std::numeric_limits<T>::max());
}

template <class T>
T clamped(Exact value) {
  if (value < Exact(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return value > Exact(std::numeric_limits<T>::max()) ? std::numeric_limits<T>::max() : static_cast<T>(value);
}

/// All powers of two of T, of both signs, with their neighbours: every bound of every integer type is among them.
template <class T>
std::vector<T> edgeValues() {
  std::vector<T> values;
  for (int bit = 0; bit <= 64; ++bit) {
    for (int offset = -1; offset <= 1; ++offset) {
      for (int sign = -1; sign <= 1; sign += 2) {
        const Exact value = sign * ((Exact(1) << bit) + offset);
        if (isInRange<T>(value)) values.push_back(static_cast<T>(value));
      }
    }
  }
  return values;
}

/// Equal with the sign of zeros; any NaN equals any other.
template <class R>
bool isSame(R a, R b) {
  return std::isnan(a) ? std::isnan(b) : (a == b && std::signbit(a) == std::signbit(b));
}
inline bool isSame(double2 a, double2 b) {
  return isSame(a.x, b.x) && isSame(a.y, b.y);
}
inline bool isSame(float2 a, float2 b) {
  return isSame(a.x, b.x) && isSame(a.y, b.y);
}

/// Calls `body` with a value of each type of a list.
template <class... Types, class Body>
void forEachType(gpuruntime::TypeList<Types...>, Body body) {
  (body(Types{}), ...);
}
