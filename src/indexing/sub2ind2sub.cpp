#include <gpuruntime/indexing/sub2ind2sub.hpp>

#include <cmath>

#include "indexing/subscripts.hpp"

namespace gpuruntime {
namespace {

using gpucommon::castdetail::truncateTo;

// Sizes come as they enter the arithmetic: as double, or as integers to divide by.

template <class T>
GPURUNTIME_DEVICE T linearIndex(T row, T column, T numRows) {
  return std::fma(numRows, column - 1, row);
}
template <class T>
GPURUNTIME_DEVICE T linearIndex(T row, T column, T page, T numRows, T numCols) {
  return std::fma(numRows, std::fma(numCols, page - 1, column - 1), row);
}

template <class T>
struct Sub2Ind2DKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* linear, const T* rows, const T* columns,
                                      T numRows) {
    if (it.isOutside()) return;
    linear[it.index] = linearIndex(rows[it.index], columns[it.index], numRows);
  }
};

template <class T>
struct Sub2Ind3DKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* linear, const T* rows, const T* columns,
                                      const T* pages, T numRows, T numCols) {
    if (it.isOutside()) return;
    linear[it.index] = linearIndex(rows[it.index], columns[it.index], pages[it.index], numRows, numCols);
  }
};

template <class T>
struct Sub2Ind2DCheckedKernel : elementwise::WritesOwnElement, elementwise::FindsInElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* linear, const T* rows, const T* columns,
                                      T numRows, T) {
    Sub2Ind2DKernel<T>::apply(it, linear, rows, columns, numRows);
  }
  static GPURUNTIME_DEVICE bool finds(const cuda::ElementwiseIterator& it, const T*, const T* rows, const T* columns,
                                      T numRows, T numCols) {
    if (it.isOutside()) return false;
    const T row = rows[it.index], column = columns[it.index];
    return (linearIndex(row, column, numRows) < 1) | (row > numRows) | (column > numCols);
  }
  static GPURUNTIME_DEVICE void report(const T*, const T*, const T*, T, T) { raiseOutOfRange(); }
};

template <class T>
struct Sub2Ind3DCheckedKernel : elementwise::WritesOwnElement, elementwise::FindsInElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* linear, const T* rows, const T* columns,
                                      const T* pages, T numRows, T numCols, T) {
    Sub2Ind3DKernel<T>::apply(it, linear, rows, columns, pages, numRows, numCols);
  }
  static GPURUNTIME_DEVICE bool finds(const cuda::ElementwiseIterator& it, const T*, const T* rows, const T* columns,
                                      const T* pages, T numRows, T numCols, T numPages) {
    if (it.isOutside()) return false;
    const T row = rows[it.index], column = columns[it.index], page = pages[it.index];
    return (linearIndex(row, column, page, numRows, numCols) < 1) | (row > numRows) | (column > numCols) |
           (page > numPages);
  }
  static GPURUNTIME_DEVICE void report(const T*, const T*, const T*, const T*, T, T, T) { raiseOutOfRange(); }
};

/// The quotient q of a linear index less 1, truncated, and a size; `rest` takes the linear index less q times the size.
template <class T>
GPURUNTIME_DEVICE unsigned long split(T linear, unsigned long size, T* rest) {
  const unsigned long q = truncateTo<unsigned long>(linear - 1) / size;
  *rest = linear - static_cast<T>(q) * static_cast<T>(size);
  return q;
}

template <class T>
struct Ind2Sub2DKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* rows, T* columns, const T* linear,
                                      unsigned long numRows) {
    if (it.isOutside()) return;
    T row;
    const unsigned long q = split(linear[it.index], numRows, &row);
    rows[it.index] = row;
    columns[it.index] = static_cast<T>(q) + 1;
  }
};

template <class T>
struct Ind2Sub3DKernel : elementwise::WritesOwnElement {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* rows, T* columns, T* pages,
                                      const T* linear, unsigned long numRows, unsigned long pageSize) {
    if (it.isOutside()) return;
    T inPage, row;
    const unsigned long r = split(linear[it.index], pageSize, &inPage);
    const unsigned long q = split(inPage, numRows, &row);
    rows[it.index] = row;
    columns[it.index] = static_cast<T>(q) + 1;
    pages[it.index] = static_cast<T>(r) + 1;
  }
};

// T is what elements of a width are moved as: types of one width share a kernel.
template <class T>
struct SelectFromRowsKernel : WritesUnlessRefused {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* output, const T* input,
                                      const Subscript<const double*>& columns, unsigned long stride) {
    if (it.isOutside()) return;
    const unsigned long column = placeIn(it, columns);
    if (isRefused(column)) return;
    output[it.index] = input[column * stride + it.index];
  }
};

template <class T>
struct SelectFromColumnsKernel : WritesUnlessRefused {
  static GPURUNTIME_DEVICE void apply(const cuda::ElementwiseIterator& it, T* output, const T* input,
                                      const Subscript<const double*>& rows, unsigned long stride) {
    if (it.isOutside()) return;
    const unsigned long row = placeIn(it, rows);
    if (isRefused(row)) return;
    output[it.index] = input[it.index * stride + row];
  }
};

template <template <class> class Kernel, class T>
void select(CUstream_st* stream, unsigned long n, T* output, const T* input, Subscript<const double*> index,
            unsigned long stride) {
  if (!armGuard(stream)) return;
  using W = MovedAs<T>;
  elementwise::launchWithDeviceFunctor<Kernel<W>>(stream, n, reinterpret_cast<W*>(output),
                                                  reinterpret_cast<const W*>(input), index, stride);
}

}  // namespace

template <class T>
void Sub2Ind2D::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows, const T* columns,
                                       unsigned long numRows) const {
  elementwise::launchWithDeviceFunctor<Sub2Ind2DKernel<T>>(stream, n, linear, rows, columns, static_cast<T>(numRows));
}

template <class T>
void Sub2Ind3D::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows, const T* columns,
                                       const T* pages, unsigned long numRows, unsigned long numCols) const {
  elementwise::launchWithDeviceFunctor<Sub2Ind3DKernel<T>>(stream, n, linear, rows, columns, pages,
                                                           static_cast<T>(numRows), static_cast<T>(numCols));
}

template <class T>
void Sub2Ind2DChecked::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows,
                                              const T* columns, unsigned long numRows, unsigned long numCols) const {
  if (!armErrorWord(stream)) return;
  elementwise::launchWithDeviceFunctor<Sub2Ind2DCheckedKernel<T>>(stream, n, linear, rows, columns,
                                                                  static_cast<T>(numRows), static_cast<T>(numCols));
}

template <class T>
void Sub2Ind3DChecked::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* linear, const T* rows,
                                              const T* columns, const T* pages, unsigned long numRows,
                                              unsigned long numCols, unsigned long numPages) const {
  if (!armErrorWord(stream)) return;
  elementwise::launchWithDeviceFunctor<Sub2Ind3DCheckedKernel<T>>(stream, n, linear, rows, columns, pages,
                                                                  static_cast<T>(numRows), static_cast<T>(numCols),
                                                                  static_cast<T>(numPages));
}

unsigned int Sub2Ind2DChecked::getErrorFlag(CUstream_st* stream) const {
  return readErrorWord(stream);
}

unsigned int Sub2Ind3DChecked::getErrorFlag(CUstream_st* stream) const {
  return readErrorWord(stream);
}

template <class T>
void Ind2Sub2D::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* rows, T* columns, const T* linear,
                                       unsigned long numRows) const {
  elementwise::launchWithDeviceFunctor<Ind2Sub2DKernel<T>>(stream, n, rows, columns, linear, numRows);
}

template <class T>
void Ind2Sub3D::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* rows, T* columns, T* pages,
                                       const T* linear, unsigned long numRows, unsigned long numCols) const {
  elementwise::launchWithDeviceFunctor<Ind2Sub3DKernel<T>>(stream, n, rows, columns, pages, linear, numRows,
                                                           numRows * numCols);
}

template <class T>
void SelectFromRows::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* output, const T* input,
                                            const double* index, unsigned long stride) const {
  // The number of columns is not known here; index 0 alone, which wraps around, is beyond the last of them.
  select<SelectFromRowsKernel>(stream, n, output, input, subscript(index, ~0UL), stride);
}

template <class T>
void SelectFromColumns::Invoker<T>::operator()(CUstream_st* stream, unsigned long n, T* output, const T* input,
                                               const double* index, unsigned long stride) const {
  select<SelectFromColumnsKernel>(stream, n, output, input, subscript(index, stride), stride);
}

GPURUNTIME_INSTANTIATE(Sub2Ind2D, DOUBLE_TYPES);
GPURUNTIME_INSTANTIATE(Sub2Ind3D, DOUBLE_TYPES);
GPURUNTIME_INSTANTIATE(Sub2Ind2DChecked, DOUBLE_TYPES);
GPURUNTIME_INSTANTIATE(Sub2Ind3DChecked, DOUBLE_TYPES);
GPURUNTIME_INSTANTIATE(Ind2Sub2D, DOUBLE_TYPES);
GPURUNTIME_INSTANTIATE(Ind2Sub3D, DOUBLE_TYPES);
GPURUNTIME_INSTANTIATE(SelectFromRows, ALL_TYPES);
GPURUNTIME_INSTANTIATE(SelectFromColumns, ALL_TYPES);

}  // namespace gpuruntime
