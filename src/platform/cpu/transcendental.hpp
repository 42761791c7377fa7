/// @file
/// Transcendental functions that the compiler can make SIMD loops of: selections instead of branches, each operation
/// rounded by itself, so that every vector level and compiler gives the same bits. Where the arguments don't allow for
/// the special cases of the C library, there are none.
#pragma once

#include "block.hpp"
#include "qualifiers.hpp"

#include <cmath>
#include <cstdint>

namespace gpuruntime::platform {

/// `x`, at most 2^53, as a double: exact.
inline double exactDouble(std::uint64_t x) {
#if defined(__AVX512DQ__) || !defined(__SSE2__)
  return static_cast<double>(static_cast<std::int64_t>(x));
#else
  // Without an instruction for lanes of 64 bits: both halves behind the leading bit of 2^84 and 2^52.
  const double upper = detail::doubleOf(x >> 32 | 0x4530000000000000) - 0x1.00000001p84;
  return upper + detail::doubleOf((x & 0xFFFFFFFF) | 0x4330000000000000);
#endif
}

/// `x - a * b` of numbers for which product and difference are exact, so that it makes no difference whether it is
/// fused.
inline double exactMinusProduct(double x, double a, double b) {
#if defined(__FMA__) || !defined(__SSE2__)
  return std::fma(-a, b, x);
#else
  return x - a * b;
#endif
}

/// The natural logarithm of a positive normal number, within 1 unit in the last place.
///
/// With x = 2^k * (1 + f), sqrt(1/2) <= 1 + f < sqrt(2), and s = f / (2 + f), log(1 + f) is a polynomial in s of which
/// the leading terms are taken apart. The method and the coefficients are those of log in Sun's fdlibm (1993).
inline double logOfNormal(double x) {
  constexpr std::uint64_t lowest = 0x3FE6A09E667F3BCD, one = 0x3FF0000000000000;
  const std::uint64_t shifted = detail::bitsOf(x) + (one - lowest);
  const double f = detail::doubleOf((shifted & 0x000FFFFFFFFFFFFF) + lowest) - 1.0;
  const double k = exactDouble(shifted >> 52) - 1023.0;
  const double s = f / (2.0 + f), z = s * s, w = z * z, halfSquare = 0.5 * f * f;
  const double even = w * (0.3999999999940941908 + w * (0.2222219843214978396 + w * 0.1531383769920937332));
  const double odd = z * (0.6666666666666735130 +
                          w * (0.2857142874366239149 + w * (0.1818357216161805012 + w * 0.1479819860511658591)));
  const double tail = s * (halfSquare + (odd + even)) + k * 1.90821492927058770002e-10;
  return k * 6.93147180369123816490e-01 - ((halfSquare - tail) - f);
}

/// Sine and cosine of 0 <= x <= 6.3, each within 1 unit in the last place.
///
/// x minus its nearest multiple of pi / 2, as a double and its tail, goes into the polynomials for [-pi / 4, pi / 4].
/// The parts of pi / 2 and the polynomials are those of Sun's fdlibm (1993).
inline void sincosOfTurn(double x, double* sine, double* cosine) {
  // Adding 2^52 * 1.5 rounds to an integer, which then stands in the lowest bits.
  const double shifted = x * 6.36619772367581382433e-01 + 0x1.8p52;
  const std::uint64_t quadrant = detail::bitsOf(shifted);
  const double q = shifted - 0x1.8p52;
  const double coarse = x - q * 1.57079632673412561417e+00;
  const double middle = q * 6.07710050630396597660e-11, fine = coarse - middle;
  const double lost = q * 2.02226624879595063154e-21 - ((coarse - fine) - middle);
  const double r = fine - lost, tail = (fine - r) - lost;

  const double z = r * r, cube = z * r;
  const double sinePart =
      8.33333333332248946124e-03 +
      z * (-1.98412698298579493134e-04 +
           z * (2.75573137070700676789e-06 + z * (-2.50507602534068634195e-08 + z * 1.58969099521155010221e-10)));
  const double sineOfRest = r - ((z * (0.5 * tail - cube * sinePart) - tail) - cube * -1.66666666666666324348e-01);
  const double cosinePart = z * (4.16666666666666019037e-02 +
                                 z * (-1.38888888888741095749e-03 +
                                      z * (2.48015872894767294178e-05 +
                                           z * (-2.75573143513906633035e-07 +
                                                z * (2.08757232129817482790e-09 + z * -1.13596475577881948265e-11)))));
  const double half = 0.5 * z, leading = 1.0 - half;
  const double cosineOfRest = leading + (((1.0 - leading) - half) + (z * cosinePart - r * tail));

  const bool isSwapped = (quadrant & 1) != 0;
  const double first = isSwapped ? cosineOfRest : sineOfRest, second = isSwapped ? sineOfRest : cosineOfRest;
  *sine = (quadrant & 2) != 0 ? -first : first;
  *cosine = ((quadrant + 1) & 2) != 0 ? -second : second;
}

namespace detail {

// erfcinv(x) for x * (2 - x) >= exp(-5): the polynomial of scripts/fiterfcinv.py, its even and odd powers side by side.
inline double erfcinvOfMiddle(double x) {
  constexpr double coefficients[] = {
      1.501409351110792,       0.24664027674416708,     -0.0041773177243829528,  -0.0012527079078118754,
      0.00021825026433970653,  -4.9960795959308792e-06, -3.4166195855728821e-06, 4.7872521389030696e-07,
      1.3416789550483992e-08,  -1.0861164896416452e-08, 9.0731434286734057e-10,  1.1960486916935747e-10,
      -3.1107799428489644e-11, 9.1226223969670017e-13,  5.3714196335591271e-13,  -7.6271105819135717e-14,
      -3.1721730053548682e-15, 1.9150938075076388e-15,  -1.0175008158120801e-16, -2.8135540351782175e-17,
      2.5500170880803511e-18,  2.099468183448933e-19,
  };
  const double z = -2.5 - logOfNormal(x * (2.0 - x)), square = z * z;
  double even = coefficients[20], odd = coefficients[21];
  unrolled<10>([&](auto step) {
    even = even * square + coefficients[18 - 2 * step];
    odd = odd * square + coefficients[19 - 2 * step];
  });
  return (even + odd * z) * (1.0 - x);
}

// One value in 300 of evenly distributed ones.
inline bool isInEnds(double x) {
  return x * (2.0 - x) < 0.0067379469990854671;
}

double erfcinvOfEnds(double x);

}  // namespace detail

/// The inverse of the complementary error function on 0 <= x <= 2, within 6 units in the last place: Inf for 0, -Inf
/// for 2.
inline double erfcinv(double x) {
  return detail::isInEnds(x) ? detail::erfcinvOfEnds(x) : detail::erfcinvOfMiddle(x);
}

/// Replaces the value of each live thread of a one-dimensional block by its erfcinv.
template <class Block, unsigned int N>
GPURUNTIME_INLINE void erfcinvOfEach(const Block& block, Live live, PerThread<double, N>& values) {
  PerThread<double, N> arguments;
  std::uint64_t ends = 0;
  block.forEachThread(live, [&](Thread thread) {
    if (isIdle(thread.x >= live.x)) return;
    const double x = values[thread];
    arguments[thread] = x;
    values[thread] = detail::erfcinvOfMiddle(x);
    ends |= detail::isInEnds(x) ? 1 : 0;
  });
  if (ends == 0) return;
  for (Thread thread{0, 0, 0, 0}; thread.lane < (live.x < N ? live.x : N); ++thread.lane) {
    if (detail::isInEnds(arguments[thread])) values[thread] = detail::erfcinvOfEnds(arguments[thread]);
  }
}

}  // namespace gpuruntime::platform
