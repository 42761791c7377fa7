#include <gpuruntime/build/linlogspace.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include <cmath>
#include <limits>

#include "gpucommon/CUDATypes.hpp"
#include "gpucommon/ptxmathcomplex.hpp"
#include "gpucommon/ptxmathreal.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

enum LinLogspaceMethod { linear = 0, logarithmic = 1 };

// The form for a difference that overflows scales both ends first.
GPURUNTIME_DEVICE double linlogspaceRealImpl(double start, double stop, double n, double i) {
  const double d = stop - start, m = n - 1;
  const double value = ((i * d) / m) + start;
  const double scaled = std::fma(stop / m, i, start) - (start / m) * i;
  return std::fabs(d) == std::numeric_limits<double>::infinity() ? scaled : value;
}

GPURUNTIME_DEVICE float linlogspaceRealImpl(float start, float stop, double n, double i) {
  const float d = stop - start;
  const double m = n - 1;
  const float value = static_cast<float>((static_cast<double>(d) * i) / m) + start;
  const float a = static_cast<float>((static_cast<double>(stop) / m) * i);
  const float b = static_cast<float>((static_cast<double>(start) / m) * i);
  return std::fabs(d) == std::numeric_limits<float>::infinity() ? (a + start) - b : value;
}

template <class T>
GPURUNTIME_DEVICE T linlogspaceImpl(T start, T stop, double n, double i) {
  if constexpr (gpucommon::CUDAIsComplex<T>::value) {
    return {linlogspaceRealImpl(start.x, stop.x, n, i), linlogspaceRealImpl(start.y, stop.y, n, i)};
  } else {
    return linlogspaceRealImpl(start, stop, n, i);
  }
}

template <class T>
GPURUNTIME_DEVICE T powerOfTen(T exponent) {
  if constexpr (gpucommon::CUDAIsComplex<T>::value) {
    return gpucommon::scalarmath::cdotexp(T{10, 0}, exponent);
  } else {
    return gpucommon::scalarmath::realPower(T(10), exponent);
  }
}

template <class T>
GPURUNTIME_DEVICE T select(bool first, T a, T b) {
  if constexpr (gpucommon::CUDAIsComplex<T>::value) {
    return {first ? a.x : b.x, first ? a.y : b.y};
  } else {
    return first ? a : b;
  }
}

template <class T, LinLogspaceMethod METHOD>
struct LinlogspaceKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* out, T start, T stop) {
    if (it.isOutside()) return;
    const unsigned long i = it.index, n = it.count;
    const T between = linlogspaceImpl(start, stop, static_cast<double>(n), static_cast<double>(i));
    const T value = select(i == n - 1, stop, between);
    if constexpr (METHOD == linear) {
      out[i] = value;
    } else {
      out[i] = powerOfTen(value);
    }
  }
};

}  // namespace

template <class T>
void Linspace::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out, T start, T stop) const {
  elementwise::launchWithDeviceFunctor<LinlogspaceKernel<T, linear>>(stream, n, out, start, stop);
}

template <class T>
void Logspace::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* out, T start, T stop) const {
  elementwise::launchWithDeviceFunctor<LinlogspaceKernel<T, logarithmic>>(stream, n, out, start, stop);
}

GPURUNTIME_INSTANTIATE(Linspace, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE(Logspace, FLOAT_TYPES);

}  // namespace gpuruntime
