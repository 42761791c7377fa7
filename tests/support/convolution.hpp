/// @file
/// What the tests of convolutions share: data, the products of the rules, and the members.
#pragma once

#include "support/trickyvalues.hpp"

#include <functional>

namespace testsupport {

/// Values of both signs and of many magnitudes, zeros of both signs among them. With `special`, some infinities and
/// NaN.
template <class T>
HostArray<T> convolutionData(unsigned long size, unsigned int seed, bool special = false) {
  using R = gpuruntime::RealOf<T>;
  std::mt19937 next(seed);
  HostArray<T> array(size);
  auto* parts = reinterpret_cast<R*>(array.data());
  for (unsigned long i = 0; i < size * sizeof(T) / sizeof(R); ++i) {
    const int exponent = static_cast<int>(next() % 9) - 4;
    const R value = std::ldexp(static_cast<R>(next()), exponent - 32) * (next() % 2 == 0 ? R(1) : R(-1));
    parts[i] = next() % 19 == 0 ? std::copysign(R(0), value) : value;
    if (special && next() % 301 == 0) parts[i] = value > 0 ? std::numeric_limits<R>::infinity() : std::nan("");
  }
  return array;
}

/// `sum` with x * f added by the rule. Volatile keeps the compiler from fusing the products of complex values.
template <class T>
T plusProduct(const T& sum, const T& x, const T& f) {
  if constexpr (isComplex<T>) {
    using R = gpuruntime::RealOf<T>;
    const volatile R xx = x.x * f.x, yy = x.y * f.y, yx = x.y * f.x;
    const volatile R re = xx - yy, im = std::fma(x.x, f.y, static_cast<R>(yx));
    return {sum.x + re, sum.y + im};
  } else {
    return std::fma(x, f, sum);
  }
}

template <class T>
T plusSum(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    return {a.x + b.x, a.y + b.y};
  } else {
    return a + b;
  }
}

/// Compares by bits, with every NaN as one.
template <class T>
void expectSums(const HostArray<T>& actual, const HostArray<T>& expected, const std::string& context) {
  ASSERT_EQ(actual.size(), expected.size());
  for (unsigned long i = 0; i < actual.size(); ++i) {
    ASSERT_TRUE(sameBits(withPlainNaN(actual[i]), withPlainNaN(expected[i])))
        << context << ": element " << i << " of " << actual.size() << " is " << inWords(actual[i]) << ", expected "
        << inWords(expected[i]);
  }
}

/// Calls `visit(T(), N)` for every member, N as mpl_::int_.
template <class Visit>
void forEachPassMember(Visit visit) {
#define GPURUNTIME_VISIT_MEMBER(A, T, N) visit(T(), mpl_::int_<N>());
  GPURUNTIME_PASS_MEMBERS(GPURUNTIME_VISIT_MEMBER, )
#undef GPURUNTIME_VISIT_MEMBER
}

/// Calls `pass(N, extraTaps, firstTap)` for the passes of a filter of so many taps: the largest member not above what
/// is left, and all that it leaves if that fits.
template <class T, class Pass>
void forEachPass(unsigned long taps, Pass pass) {
  for (unsigned long first = 0; first < taps;) {
    unsigned long N = 0;
    forEachPassMember([&](auto type, auto size) {
      if (std::is_same_v<decltype(type), T> && size.value <= static_cast<int>(taps - first)) N = size.value;
    });
    const unsigned long extra = std::min(taps - first - N, gpuruntime::conv::haloOf<T>(N) + 1 - N);
    pass(N, extra, first);
    first += N + extra;
  }
}

}  // namespace testsupport
