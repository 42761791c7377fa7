/// @file
/// Magnitude and angle of a point of the plane, in operations that are each rounded by itself: the same bits on every
/// backend and at every vector level. Selections instead of branches, for loops over threads.
#pragma once

#include <cmath>
#include <limits>

namespace gpuruntime::platform {

/// sqrt(a^2 + b^2) without overflow or underflow on the way, within 2 units in the last place. +Inf if either is
/// infinite, else NaN if either is.
GPURUNTIME_INLINE double hypot(double a, double b) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double first = std::abs(a), second = std::abs(b);
  const double larger = first > second ? first : second;
  // Powers of two; within these bounds no square overflows, and one that underflows does not count.
  const double up = 0x1p600, down = 0x1p-600;
  const bool tooHigh = larger > 0x1p510, tooLow = larger < 0x1p-450;
  const double scale = tooHigh ? down : (tooLow ? up : 1.0), back = tooHigh ? up : (tooLow ? down : 1.0);
  // An infinity takes the place of a NaN beside it before the root: callers' tests for NaN then stay single
  // comparisons.
  const bool isInfinite = (first == infinity) | (second == infinity);
  const double x = isInfinite ? infinity : first * scale, y = second * scale;
  return std::sqrt(x * x + (isInfinite ? 0.0 : y * y)) * back;
}
/// The same in double, where no square of a float leaves the range: within 1 unit in the last place.
GPURUNTIME_INLINE float hypot(float a, float b) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const bool isInfinite = (std::abs(a) == infinity) | (std::abs(b) == infinity);
  const double x = isInfinite ? infinity : a, y = b;
  return static_cast<float>(std::sqrt(x * x + (isInfinite ? 0.0 : y * y)));
}

/// The angle of (x, y) in [-pi, pi], with the sign of y, within 2 units in the last place; NaN if either is. Zeros and
/// infinities are taken by their signs: (-1, -0) has the angle -pi, (Inf, Inf) pi / 4.
///
/// The quotient of the smaller by the larger part is brought near 0 by atan(1/2) or pi / 4. The polynomial and the
/// parts of the constants are those of atan in Sun's fdlibm (1993).
GPURUNTIME_INLINE double atan2(double y, double x) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double ax = std::abs(x), ay = std::abs(y);
  const bool isSteep = ay > ax;
  const double larger = isSteep ? ay : ax, smaller = isSteep ? ax : ay;
  const bool isDiagonal = (ax == infinity) & (ay == infinity);
  // Beside a part that has to be scaled down, one that loses bits by it has the quotient 0.
  const double scale = larger > 0x1p1000 ? 0x1p-4 : 1.0;
  const double scaled = larger == 0 ? 1.0 : larger * scale;
  const double low = isDiagonal ? 1.0 : smaller * scale, high = isDiagonal ? 1.0 : scaled;

  // Above 11/16 counted from pi / 4, above 7/16 from atan(1/2), below from 0.
  const bool isUpper = low > 0.6875 * high, isMiddle = low > 0.4375 * high;
  const double numerator = isUpper ? low - high : (isMiddle ? 2.0 * low - high : low);
  const double denominator = isUpper ? low + high : (isMiddle ? 2.0 * high + low : high);
  const double base = isUpper ? 7.85398163397448278999e-01 : (isMiddle ? 4.63647609000806093515e-01 : 0.0);
  const double baseTail = isUpper ? 3.06161699786838301793e-17 : (isMiddle ? 2.26987774529616870924e-17 : 0.0);

  const double t = numerator / denominator, z = t * t, w = z * z;
  const double even = z * (3.33333333333329318027e-01 +
                           w * (1.42857142725034663711e-01 +
                                w * (9.09088713343650656196e-02 +
                                     w * (6.66107313738753120669e-02 +
                                          w * (4.97687799461593236017e-02 + w * 1.62858201153657823623e-02)))));
  const double odd =
      w *
      (-1.99999999998764832476e-01 +
       w * (-1.11111104054623557880e-01 +
            w * (-7.69187620504482999495e-02 + w * (-5.83357013379057348645e-02 + w * -3.65315727442169155270e-02))));
  const double ofQuotient = base - ((t * (even + odd) - baseTail) - t);

  // Counted from the nearest axis, towards it or away from it.
  constexpr double right = 1.57079632679489655800e+00, rightTail = 6.12323399573676603587e-17;
  const bool isLeft = std::copysign(1.0, x) < 0;
  const double axis = isSteep ? right : (isLeft ? 2 * right : 0.0);
  const double axisTail = isSteep ? rightTail : (isLeft ? 2 * rightTail : 0.0);
  const double turned = isSteep ? -ofQuotient : ofQuotient;
  const double angle = axis + ((isLeft ? -turned : turned) + axisTail);
  return std::copysign(angle, y);
}
/// The same in double: within 1 unit in the last place.
GPURUNTIME_INLINE float atan2(float y, float x) {
  return static_cast<float>(atan2(static_cast<double>(y), static_cast<double>(x)));
}

}  // namespace gpuruntime::platform
