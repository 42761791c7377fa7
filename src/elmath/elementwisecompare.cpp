#include <gpuruntime/elmath/elementwisecompare.hpp>
#include <gpuruntime/launcher/elementwise.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/hostDeviceCast.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::CUDATraits;

template <class T>
inline constexpr bool isLong = std::is_same_v<T, long long> || std::is_same_v<T, unsigned long long>;

template <class T>
GPURUNTIME_DEVICE bool isNegative([[maybe_unused]] T value) {
  if constexpr (std::is_signed_v<T>) return value < 0;
  return false;
}

template <class A, class B>
struct ScalarComparator {
  static GPURUNTIME_DEVICE bool compare(const A& a, const B& b, [[maybe_unused]] bool nanEqual) {
    if constexpr (std::is_same_v<A, B> && std::is_floating_point_v<A>) {
      return nanEqual ? CUDATraits<A>::isequalwithequalnans(a, b) : CUDATraits<A>::isequal(a, b);
    } else if constexpr (std::is_same_v<A, B>) {
      return gpucommon::bitsOf(a) == gpucommon::bitsOf(b);
    } else if constexpr (isLong<A> && isLong<B>) {
      return !isNegative(a) & !isNegative(b) & (gpucommon::bitsOf(a) == gpucommon::bitsOf(b));
    } else {
      using gpucommon::castNumeric;
      return ScalarComparator<double, double>::compare(castNumeric<double>(a), castNumeric<double>(b), nanEqual);
    }
  }
};

// Both parts are looked at whatever the first says: no branch, so the loop over elements vectorises.
template <class T1, class T2>
GPURUNTIME_DEVICE bool doCompare(const T1& a, const T2& b, bool nanEqual) {
  using Comparator = ScalarComparator<RealOf<T1>, RealOf<T2>>;
  if constexpr (CUDATraits<T1>::iscomplex && CUDATraits<T2>::iscomplex) {
    return Comparator::compare(a.x, b.x, nanEqual) & Comparator::compare(a.y, b.y, nanEqual);
  } else if constexpr (CUDATraits<T2>::iscomplex) {
    return Comparator::compare(a, b.x, nanEqual) & (b.y == 0);
  } else if constexpr (CUDATraits<T1>::iscomplex) {
    return Comparator::compare(a.x, b, nanEqual) & (a.y == 0);
  } else {
    return Comparator::compare(a, b, nanEqual);
  }
}

template <class T1, class T2>
struct ElementwiseCompareKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, bool* result, const T1* a, const T2* b,
                                      bool nanEqual) {
    if (it.isOutside()) return;
    result[it.index] = doCompare(a[it.index], b[it.index], nanEqual);
  }
};

}  // namespace

template <class T1, class T2>
void ElementwiseCompare::Invoker<T1, T2>::operator()(CUstream_st* stream, unsigned long n, bool* result, const T1* a,
                                                     const T2* b, bool nanEqual) const {
  elementwise::launchWithDeviceFunctor<ElementwiseCompareKernel<T1, T2>>(stream, n, result, a, b, nanEqual);
}

GPURUNTIME_INSTANTIATE_PAIRS(ElementwiseCompare, ALL_TYPES, ALL_TYPES);

}  // namespace gpuruntime
