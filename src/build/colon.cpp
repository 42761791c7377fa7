#include <gpuruntime/build/colon.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include <cmath>
#include <cstring>
#include <type_traits>

#include "gpucommon/hostDeviceCast.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

// The integer that a value is truncated to before T takes its low bits.
template <class T>
using WideInteger = std::conditional_t<std::is_signed_v<T>, std::conditional_t<(sizeof(T) > 4), long long, int>,
                                       std::conditional_t<(sizeof(T) > 4), unsigned long long, unsigned int>>;

template <class T>
GPURUNTIME_DEVICE T convertForStore(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    return static_cast<T>(gpucommon::castdetail::truncateTo<WideInteger<T>>(value));
  }
}

// i rounded to double. Vectors without AVX-512 have no such conversion, and compilers then take elements one by one. So
// both halves of 32 bits are put below the exponents 2^84 and 2^52; taking these away again leaves one rounding, that
// of the sum.
GPURUNTIME_DEVICE double rounded(unsigned long i) {
  const unsigned long highBits = (i >> 32) | 0x4530000000000000UL, lowBits = (i & 0xFFFFFFFFUL) | 0x4330000000000000UL;
  double high, low;
  std::memcpy(&high, &highBits, sizeof high);
  std::memcpy(&low, &lowBits, sizeof low);
  return (high - (0x1p84 + 0x1p52)) + low;
}

GPURUNTIME_DEVICE double middle(double start, double stop) {
  const bool sameSide = (start >= 0 && stop >= 0) || (start <= 0 && stop <= 0);
  return sameSide ? std::fma(stop - start, 0.5, start) : (start + stop) * 0.5;
}

template <class T>
struct ColonKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, double start, double step,
                                      double stop) {
    if (it.isOutside()) return;
    const unsigned long i = it.index, n = it.count;
    const unsigned long last = n - 1;
    const unsigned long half = last >> 1;
    // Both halves by one formula: a distance from the nearer end, and the end.
    const bool lower = i <= half;
    const double offset = platform::__dmul_rn(rounded(lower ? i : last - i), step);
    const double value = platform::__dadd_rn(lower ? start : stop, lower ? offset : -offset);
    const double middleValue = middle(start, stop);
    out[i] = convertForStore<T>(i == half && n % 2 == 1 ? middleValue : value);
  }
};

template <class T>
struct IntColonKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, double start, double step) {
    if (it.isOutside()) return;
    out[it.index] = convertForStore<T>(std::fma(rounded(it.index), step, start));
  }
};

}  // namespace

template <class T>
void Colon::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out, double start, double step,
                                   double stop) const {
  elementwise::launchWithDeviceFunctor<ColonKernel<T>>(stream, n, out, start, step, stop);
}

template <class T>
void IntColon::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out, double start, double step) const {
  elementwise::launchWithDeviceFunctor<IntColonKernel<T>>(stream, n, out, start, step);
}

GPURUNTIME_INSTANTIATE(Colon, REAL_NUMERIC_TYPES);
GPURUNTIME_INSTANTIATE(IntColon, REAL_NUMERIC_TYPES);

}  // namespace gpuruntime
