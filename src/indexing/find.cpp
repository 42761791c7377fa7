#include <gpuruntime/indexing/find.hpp>
#include <gpuruntime/launcher/elementwise.hpp>
#include <gpuruntime/launcher/elementwise2d.hpp>

#include "gpucommon/CUDATraits.hpp"
#include "gpucommon/hostDeviceCast.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {
namespace {

using gpucommon::castdetail::truncateTo;

/// What elements of type T are read as: types that have the same zero and the same width share a kernel.
template <class T>
using Tested = std::conditional_t<std::is_floating_point_v<RealOf<T>>, T, gpucommon::StorageOf<T>>;

/// Place of a listed element in the outputs: the one with ordinal prefix[i] of prefix[count - 1]. Not below k if it is
/// none of the k.
template <bool FIRST>
GPURUNTIME_DEVICE unsigned long slotOf(const double* prefix, unsigned long i, unsigned long count, unsigned long k) {
  const auto ordinal = truncateTo<unsigned long>(prefix[i]);
  if constexpr (FIRST) {
    return ordinal - 1;
  } else {
    // An element in front of the last k wraps around to a large number.
    const auto total = truncateTo<unsigned long>(prefix[count - 1]);
    return k <= total ? ordinal - 1 - (total - k) : k;
  }
}

template <class T, bool FIRST>
struct Find1DKernel : elementwise::ListsElements {
  using Iterator = cuda::ElementwiseIterator;

  static GPURUNTIME_DEVICE bool lists(const Iterator& it, double*, const T* input, const double*, unsigned long) {
    return !it.isOutside() && !gpucommon::CUDATraits<T>::isZero(input[it.index]);
  }
  static GPURUNTIME_DEVICE unsigned long slot(const Iterator& it, double*, const T*, const double* prefix,
                                              unsigned long k) {
    return slotOf<FIRST>(prefix, it.index, it.count, k);
  }
  static GPURUNTIME_DEVICE void write(const Iterator& it, unsigned long slot, double* positions, const T*,
                                      const double*, unsigned long k) {
    if (slot < k) positions[slot] = static_cast<double>(it.index + 1);
  }
};

template <class T, bool FIRST>
struct Find2DDevice : elementwise::ListsElements {
  using Iterator = cuda::Elementwise2DIterator;

  static GPURUNTIME_DEVICE unsigned long index(const Iterator& it) { return it.y * it.sizeX + it.x; }

  static GPURUNTIME_DEVICE bool lists(const Iterator& it, double*, double*, const T* input, const double*,
                                      unsigned long) {
    return !it.isOutside() && !gpucommon::CUDATraits<T>::isZero(input[index(it)]);
  }
  static GPURUNTIME_DEVICE unsigned long slot(const Iterator& it, double*, double*, const T*, const double* prefix,
                                              unsigned long k) {
    return slotOf<FIRST>(prefix, index(it), it.sizeX * it.sizeY, k);
  }
  static GPURUNTIME_DEVICE void write(const Iterator& it, unsigned long slot, double* rows, double* columns, const T*,
                                      const double*, unsigned long k) {
    if (slot >= k) return;
    rows[slot] = static_cast<double>(it.x + 1);
    columns[slot] = static_cast<double>(it.y + 1);
  }
};

template <class T, bool FIRST>
struct Find2DWithValueDevice : elementwise::ListsElements {
  using Iterator = cuda::Elementwise2DIterator;
  using WithoutValue = Find2DDevice<T, FIRST>;

  static GPURUNTIME_DEVICE bool lists(const Iterator& it, double* rows, double* columns, T*, const T* input,
                                      const double* prefix, unsigned long k) {
    return WithoutValue::lists(it, rows, columns, input, prefix, k);
  }
  static GPURUNTIME_DEVICE unsigned long slot(const Iterator& it, double* rows, double* columns, T*, const T* input,
                                              const double* prefix, unsigned long k) {
    return WithoutValue::slot(it, rows, columns, input, prefix, k);
  }
  static GPURUNTIME_DEVICE void write(const Iterator& it, unsigned long slot, double* rows, double* columns, T* values,
                                      const T* input, const double* prefix, unsigned long k) {
    WithoutValue::write(it, slot, rows, columns, input, prefix, k);
    if (slot < k) values[slot] = input[WithoutValue::index(it)];
  }
};

/// Calls `launch(isFirst)` with std::true_type or std::false_type; any other mode does nothing.
template <class Launch>
void launchByMode(FindFirstLast mode, Launch launch) {
  if (mode == FindFirstLast::first) launch(std::true_type());
  if (mode == FindFirstLast::last) launch(std::false_type());
}

template <class T>
const Tested<T>* tested(const T* input) {
  return reinterpret_cast<const Tested<T>*>(input);
}

}  // namespace

template <class T>
void Find1D::Invoker<T>::operator()(CUstream_st* stream, double* positions, const T* input, const double* prefix,
                                    unsigned long k, unsigned long n, FindFirstLast mode) const {
  launchByMode(mode, [=](auto isFirst) {
    elementwise::launchWithDeviceFunctor<Find1DKernel<Tested<T>, isFirst>>(stream, n, positions, tested(input), prefix,
                                                                           k);
  });
}

template <class T>
void Find2D::Invoker<T>::operator()(CUstream_st* stream, double* rows, double* columns, const T* input,
                                    const double* prefix, unsigned long k, unsigned long numRows,
                                    unsigned long numColumns, FindFirstLast mode) const {
  launchByMode(mode, [=](auto isFirst) {
    elementwise2d::launchWithDeviceFunctor<Find2DDevice<Tested<T>, isFirst>>(stream, numRows, numColumns, rows, columns,
                                                                             tested(input), prefix, k);
  });
}

template <class T>
void Find2DWithValue::Invoker<T>::operator()(CUstream_st* stream, double* rows, double* columns, T* values,
                                             const T* input, const double* prefix, unsigned long k,
                                             unsigned long numRows, unsigned long numColumns,
                                             FindFirstLast mode) const {
  launchByMode(mode, [=](auto isFirst) {
    elementwise2d::launchWithDeviceFunctor<Find2DWithValueDevice<Tested<T>, isFirst>>(
        stream, numRows, numColumns, rows, columns, reinterpret_cast<Tested<T>*>(values), tested(input), prefix, k);
  });
}

GPURUNTIME_INSTANTIATE(Find1D, ALL_TYPES);
GPURUNTIME_INSTANTIATE(Find2D, ALL_TYPES);
GPURUNTIME_INSTANTIATE(Find2DWithValue, ALL_TYPES);

}  // namespace gpuruntime
