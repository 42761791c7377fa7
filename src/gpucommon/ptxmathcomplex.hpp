/// @file
/// Complex scalar operations on `double2` and `float2`, for host and device. All are pure, and each step is rounded by
/// itself. A value is zero if it compares equal to 0: -0 is, NaN is not.
///
/// Where selections stand in place of branches, callers' loops over elements stay vectorisable.
#pragma once

#include <cmath>
#include <limits>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/ptxmathreal.hpp"

namespace gpucommon::scalarmath {

namespace complexdetail {

template <class C>
using RealOf = typename CUDAComplexToReal<C>::type;

/// 0.5 with the sign of a part that is not zero.
template <class R>
GPURUNTIME_HOST_DEVICE R signedHalf(R part) {
  return part > 0 ? R(0.5) : R(-0.5);
}

/// The four products of the parts of two complex values.
template <class R>
struct PartProducts {
  R rr, ii, ri, ir;
};

template <class C>
GPURUNTIME_HOST_DEVICE PartProducts<RealOf<C>> partProducts(const C& a, const C& b) {
  return {a.x * b.x, a.y * b.y, a.x * b.y, a.y * b.x};
}

template <class C>
GPURUNTIME_HOST_DEVICE C sumOfProducts(const PartProducts<RealOf<C>>& p) {
  return C{p.rr - p.ii, p.ri + p.ir};
}

/// `part / scale`, exactly 1 in magnitude where the two are equal: also for infinities, and for zeros.
template <class R>
GPURUNTIME_HOST_DEVICE R dividedByScale(R part, R scale) {
  return std::abs(part) == scale ? std::copysign(R(1), part) : part / scale;
}

/// `value` times both scales. A zero stays one, whatever the scales.
template <class R>
GPURUNTIME_HOST_DEVICE R timesScales(R value, R scaleA, R scaleB) {
  return value != 0 ? scaleA * (scaleB * value) : value;
}

/// `product`, or a zero with the sign of its scaled counterpart if it is NaN.
template <class R>
GPURUNTIME_HOST_DEVICE R zeroIfNaN(R product, R scaled) {
  return product != product ? std::copysign(R(0), scaled) : product;
}

}  // namespace complexdetail

/// (r, 0).
template <class C>
GPURUNTIME_HOST_DEVICE C complexifyreal(const complexdetail::RealOf<C>& r) {
  return C{r, 0};
}

/// (the larger, the smaller) of the magnitudes of the parts; a NaN imaginary part counts as the larger.
template <class C>
GPURUNTIME_INLINE C orderRealImagValues(const C& z) {
  const auto re = std::abs(z.x), im = std::abs(z.y);
  const bool realLarger = re > im;
  return C{realLarger ? re : im, realLarger ? im : re};
}

/// |z| in the precision of the parts, infinite if a part is, also beside a NaN.
template <class C>
GPURUNTIME_INLINE complexdetail::RealOf<C> magnitude(const C& z) {
  return gpuruntime::platform::hypot(z.x, z.y);
}

namespace complexdetail {

/// Half of |z|, which does not overflow; NaN if a part is, also beside an infinity.
template <class C>
GPURUNTIME_INLINE RealOf<C> halvedMagnitude(const C& z) {
  using R = RealOf<C>;
  const R half = magnitude(C{z.x * R(0.5), z.y * R(0.5)});
  return CUDATraitsDetail::isNaNImpl(z) ? std::numeric_limits<R>::quiet_NaN() : half;
}

/// True if one of the keys is the smaller.
template <class R>
GPURUNTIME_INLINE bool decide(R keyA, R keyB) {
  return (keyA < keyB) | (keyB < keyA);
}

/// cmincompare of values whose magnitudes are known.
template <class C>
GPURUNTIME_INLINE bool precedes(const C& a, RealOf<C> magnitudeA, const C& b, RealOf<C> magnitudeB) {
  using R = RealOf<C>;
  // From the last step to the first, each selects its keys where they decide.
  R keyA = gpuruntime::platform::atan2(a.y, a.x), keyB = gpuruntime::platform::atan2(b.y, b.x);
  const C partsA = orderRealImagValues(a), partsB = orderRealImagValues(b);
  const bool partsDecide = (partsA.x == partsB.x) & decide(partsA.y, partsB.y);
  keyA = partsDecide ? partsA.y : keyA, keyB = partsDecide ? partsB.y : keyB;
  const R halfA = halvedMagnitude(a), halfB = halvedMagnitude(b);
  const bool halvesDecide = (magnitudeB == std::numeric_limits<R>::infinity()) & decide(halfA, halfB);
  keyA = halvesDecide ? halfA : keyA, keyB = halvesDecide ? halfB : keyB;
  const bool magnitudesDecide = decide(magnitudeA, magnitudeB);
  keyA = magnitudesDecide ? magnitudeA : keyA, keyB = magnitudesDecide ? magnitudeB : keyB;
  return keyA < keyB;
}

}  // namespace complexdetail

/// The order of complex values: true if a comes strictly before b. The smaller magnitude comes first. Of infinite
/// magnitudes, those of the halved values decide, so that values whose magnitude overflows are told apart; a NaN part
/// makes such a magnitude NaN. Of values with the same larger part in magnitude, the smaller other part comes first,
/// and then the smaller angle in [-pi, pi]. A comparison with NaN decides nothing, and passes on to the next.
///
/// Magnitudes and angles are rounded, so it is not transitive among values whose magnitudes differ in the last bits
/// alone. It is the same on both backends.
template <class C>
GPURUNTIME_INLINE bool cmincompare(const C& a, const C& b) {
  return complexdetail::precedes(a, magnitude(a), b, magnitude(b));
}

/// The mirror of cmincompare: true if a comes strictly after b in that order.
template <class C>
GPURUNTIME_INLINE bool cmaxcompare(const C& a, const C& b) {
  return cmincompare(b, a);
}

/// cmincompare with NaN magnitudes behind all others, and equal among each other. The second form takes magnitudes that
/// are known.
template <class C>
GPURUNTIME_INLINE bool cminnancompare(const C& a, complexdetail::RealOf<C> magnitudeA, const C& b,
                                      complexdetail::RealOf<C> magnitudeB) {
  using CUDATraitsDetail::isNaNImpl;
  return (!isNaNImpl(magnitudeA)) & (isNaNImpl(magnitudeB) | complexdetail::precedes(a, magnitudeA, b, magnitudeB));
}
template <class C>
GPURUNTIME_INLINE bool cminnancompare(const C& a, const C& b) {
  return cminnancompare(a, magnitude(a), b, magnitude(b));
}

/// True if a is strictly greater than b in the order of cmincompare, with NaN magnitudes behind all others here too:
/// the order of maxima. The second form takes magnitudes that are known.
template <class C>
GPURUNTIME_INLINE bool cmaxnancompare(const C& a, complexdetail::RealOf<C> magnitudeA, const C& b,
                                      complexdetail::RealOf<C> magnitudeB) {
  using CUDATraitsDetail::isNaNImpl;
  return (!isNaNImpl(magnitudeA)) & (isNaNImpl(magnitudeB) | complexdetail::precedes(b, magnitudeB, a, magnitudeA));
}
template <class C>
GPURUNTIME_INLINE bool cmaxnancompare(const C& a, const C& b) {
  return cmaxnancompare(a, magnitude(a), b, magnitude(b));
}

/// 1 / z with a fused denominator. 1 / (0, 0) is (1 / z.x, 0), and a real or imaginary z gives a part that is +0.
template <class C>
GPURUNTIME_HOST_DEVICE C reciprocal(const C& z) {
  using R = complexdetail::RealOf<C>;
  const R re = z.x, im = z.y;
  const bool realLarger = std::abs(re) > std::abs(im);
  const R large = realLarger ? re : im, small = realLarger ? im : re;
  const R ratio = small / large;
  // Both parts as quotients of one denominator; the special cases replace it and the numerators.
  R denominator = std::fma(ratio, small, large);
  R reNumerator = realLarger ? R(1) : ratio;
  R imNumerator = realLarger ? -ratio : R(-1);
  if (std::abs(re) == std::abs(im)) {
    denominator = std::abs(re);
    reNumerator = complexdetail::signedHalf(re);
    imNumerator = -complexdetail::signedHalf(im);
  }
  const bool isReal = im == 0, isImaginary = !isReal && re == 0;
  if (isImaginary) denominator = im, imNumerator = -1;
  if (isReal) denominator = re, reNumerator = 1;
  return C{isImaginary ? R(0) : reNumerator / denominator, isReal ? R(0) : imNumerator / denominator};
}

/// a / b by scaled division with fused denominator. A real or imaginary b divides the parts of a, and a zero part of a
/// then gives +0 in its place, even by (0, 0), unless both are zero: so (1, 0) / (0, 0) is (Inf, 0).
template <class C>
GPURUNTIME_HOST_DEVICE C cdivide(const C& a, const C& b) {
  using R = complexdetail::RealOf<C>;
  const R ar = a.x, ai = a.y, br = b.x, bi = b.y;
  const bool realLarger = std::abs(br) > std::abs(bi);
  const R large = realLarger ? br : bi, small = realLarger ? bi : br;
  const R partnerOfLarge = realLarger ? ar : ai, partnerOfSmall = realLarger ? ai : ar;
  const R ratio = small / large;
  const R product = ratio * partnerOfLarge;
  // Both parts as quotients of one denominator; the special cases replace it and the numerators.
  R denominator = std::fma(ratio, small, large);
  R reNumerator = std::fma(ratio, partnerOfSmall, partnerOfLarge);
  R imNumerator = realLarger ? partnerOfSmall - product : product - partnerOfSmall;
  if (std::abs(br) == std::abs(bi)) {
    const R halfRe = complexdetail::signedHalf(br), halfIm = complexdetail::signedHalf(bi);
    denominator = std::abs(bi);
    reNumerator = std::fma(ar, halfRe, ai * halfIm);
    imNumerator = ai * halfRe - ar * halfIm;
  }
  const bool isReal = bi == 0, isImaginary = !isReal && br == 0;
  if (isImaginary) denominator = bi, reNumerator = ai, imNumerator = -ar;
  if (isReal) denominator = br, reNumerator = ar, imNumerator = ai;
  // Without short-circuits, which the compiler would keep as branches.
  const bool arIsZero = ar == 0, aiIsZero = ai == 0;
  const bool reIsZero = (arIsZero != aiIsZero) & (isReal ? arIsZero : (isImaginary & aiIsZero));
  const bool imIsZero = isReal ? aiIsZero : (isImaginary & arIsZero);
  return C{reIsZero ? R(0) : reNumerator / denominator, imIsZero ? R(0) : imNumerator / denominator};
}

/// a * b from scaled factors, for a product whose plain form has a NaN part: keeps infinities, and takes infinity times
/// zero as a signed zero.
template <class C>
GPURUNTIME_HOST_DEVICE C ctimesRecovered(const C& a, const C& b) {
  using namespace complexdetail;
  using R = RealOf<C>;
  using CUDATraitsDetail::isInfImpl;
  const R scaleA = orderRealImagValues(a).x, scaleB = orderRealImagValues(b).x;
  const C unitA{dividedByScale(a.x, scaleA), dividedByScale(a.y, scaleA)};
  const C unitB{dividedByScale(b.x, scaleB), dividedByScale(b.y, scaleB)};
  const PartProducts<R> plain = partProducts(a, b), scaled = partProducts(unitA, unitB);
  const bool infinityTimesZero =
      (isInfImpl(scaleA) && (b.x == 0 || b.y == 0)) || (isInfImpl(scaleB) && (a.x == 0 || a.y == 0));
  if (infinityTimesZero) {
    return sumOfProducts<C>({zeroIfNaN(plain.rr, scaled.rr), zeroIfNaN(plain.ii, scaled.ii),
                             zeroIfNaN(plain.ri, scaled.ri), zeroIfNaN(plain.ir, scaled.ir)});
  }
  const C sum = sumOfProducts<C>(scaled);
  return C{timesScales(sum.x, scaleA, scaleB), timesScales(sum.y, scaleA, scaleB)};
}

/// a * b with four products and two sums, each rounded; (a.x * b.x, a.y) if both are real. A NaN part starts
/// ctimesRecovered.
template <class C>
GPURUNTIME_HOST_DEVICE C ctimes(const C& a, const C& b) {
  if (a.y == 0 && b.y == 0) return C{a.x * b.x, a.y};
  const C product = complexdetail::sumOfProducts<C>(complexdetail::partProducts(a, b));
  return CUDATraitsDetail::isNaNImpl(product) ? ctimesRecovered(a, b) : product;
}

/// exp(z), finite also where exp(z.x) alone overflows; (exp(z.x), 0) if z is real, NaN parts if z.y is infinite.
template <class C>
GPURUNTIME_HOST_DEVICE C cexp(const C& z) {
  using R = complexdetail::RealOf<C>;
  if (z.y == 0) return C{std::exp(z.x), 0};
  // From here on exp(z.x) may be too large for the type.
  constexpr R limit = std::is_same_v<R, double> ? R(709) : R(88);
  R sine, cosine;
  gpuruntime::platform::sincos(z.y, &sine, &cosine);
  if (z.x > limit) {
    const R half = std::exp(z.x / 2);
    return C{(cosine * half) * half, (sine * half) * half};
  }
  const R magnitude = std::exp(z.x);
  return C{cosine * magnitude, sine * magnitude};
}

/// (log|z|, angle of z in [-pi, pi]); a z below 0 on the real axis has the angle of the sign of z.y.
template <class C>
GPURUNTIME_HOST_DEVICE C clog(const C& z) {
  using R = complexdetail::RealOf<C>;
  if (z.y == 0) return C{std::log(std::abs(z.x)), z.x < 0 ? std::copysign(ptxPi<R>(), z.y) : R(0)};
  const R angle = std::atan2(z.y, z.x);
  const R magnitude = std::hypot(z.x, z.y);
  if (CUDATraitsDetail::isInfImpl(magnitude)) {
    constexpr R logOfTwo = static_cast<R>(0.6931471805599453);
    return C{std::log(hypot(z.x / 2, z.y / 2)) + logOfTwo, angle};
  }
  return C{std::log(magnitude), angle};
}

namespace complexdetail {

/// a to the power of a finite, integer-valued exponent by repeated squaring. The exponent stays floating: it may be
/// beyond every integer type.
template <class C>
GPURUNTIME_HOST_DEVICE C integerComplexPower(const C& a, RealOf<C> exponent) {
  C result{1, 0}, square = a;
  for (RealOf<C> rest = std::abs(exponent); rest > 0; rest = std::floor(rest / 2)) {
    if (rest - 2 * fix(rest / 2) == 1) result = ctimes(square, result);
    square = ctimes(square, square);
  }
  return exponent < 0 ? reciprocal(result) : result;
}

/// True if the power of a to a real exponent is the real power of the real parts.
template <class C>
GPURUNTIME_HOST_DEVICE bool hasRealPower(const C& a, RealOf<C> exponent) {
  using namespace CUDATraitsDetail;
  return a.y == 0 && (a.x >= 0 || isInfImpl(a.x) || isNaNImpl(a.x) || isInfImpl(exponent) || isNaNImpl(exponent));
}

}  // namespace complexdetail

/// a to the power b. A real b that is an integer multiplies; other real b of a real a that is not negative, and all
/// with infinities or NaN, take realPower; else, and where a multiplication gave NaN, exp(b log(a)). The power 0 is
/// (1, 0), unless a has a NaN part.
template <class C>
GPURUNTIME_HOST_DEVICE C cdotexp(const C& a, const C& b) {
  using namespace CUDATraitsDetail;
  using R = complexdetail::RealOf<C>;
  if (b.y == 0) {
    const R exponent = b.x;
    if (exponent == 0) return isNaNImpl(a) ? C{ptxGetNaN<R>(), ptxGetNaN<R>()} : C{1, 0};
    if (!isInfImpl(exponent) && isIntegerValued(exponent)) {
      // The commonest power takes one product; the loop's further product by 1 would change no bit of it.
      const C power = exponent == 2 ? ctimes(a, a) : complexdetail::integerComplexPower(a, exponent);
      if (!isNaNImpl(power)) return power;
    } else if (complexdetail::hasRealPower(a, exponent)) {
      return C{realPower(a.x, exponent), 0};
    }
  }
  return cexp(ctimes(clog(a), b));
}

}  // namespace gpucommon::scalarmath
