/// @file
/// The order of complex values once more, step by step, with the magnitudes and angles of the C library.
#pragma once

#include <cmath>
#include <limits>

namespace testsupport {

/// 1 if a comes first, -1 if b does, 0 if no step tells them apart.
template <class C>
int complexOrder(const C& a, const C& b) {
  using R = decltype(C::x);
  const auto compared = [](R first, R second) { return first < second ? 1 : (second < first ? -1 : 0); };
  const R largeA = std::hypot(a.x, a.y), largeB = std::hypot(b.x, b.y);
  if (const int order = compared(largeA, largeB)) return order;
  if (std::isinf(largeB)) {
    const auto half = [](const C& z) {
      const bool hasNaN = std::isnan(z.x) || std::isnan(z.y);
      return hasNaN ? std::numeric_limits<R>::quiet_NaN() : std::hypot(z.x * R(0.5), z.y * R(0.5));
    };
    if (const int order = compared(half(a), half(b))) return order;
  }
  const auto sorted = [](const C& z) {
    const R re = std::abs(z.x), im = std::abs(z.y);
    return re > im ? C{re, im} : C{im, re};
  };
  if (sorted(a).x == sorted(b).x) {
    if (const int order = compared(sorted(a).y, sorted(b).y)) return order;
  }
  const auto angle = [](const C& z) { return static_cast<R>(std::atan2(static_cast<long double>(z.y), z.x)); };
  return compared(angle(a), angle(b));
}

}  // namespace testsupport
