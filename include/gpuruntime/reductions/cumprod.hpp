/// @file
/// Cumulative products along one dimension of an array, in place. Arguments, order of operations, chunks and errors are
/// those of cumsum.hpp, with products for sums and the identity 1, or (1, 0).
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Running products in the arithmetic of T: every floating product is rounded, an integer product is clamped to the
/// range of T up to 32 bits, and modulo 2^64 above; the product of complex integers is modulo 2^width of a part, that
/// of floating complex elements keeps infinities; a `bool` is false from the first false one on.
///
/// NaN spreads to all products that hold it. The identity changes no real element, but may change the sign of a zero
/// part of a complex one. The totals are written in any case.
class CumProd {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CumProd, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* totals, T* data, unsigned long N, unsigned long L,
                                   unsigned long S) const;
  };
};

/// Joins chunks that CumProd has scanned each by itself, as CumSumAdjust does.
class CumProdAdjust {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CumProdAdjust, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* adjustments, T* data, unsigned long N, unsigned long L,
                                   unsigned long K, unsigned long S) const;
  };
};

}  // namespace gpuruntime
