/// @file
/// Whether an array holds subscripts, and the largest of them.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

#include <utility>

namespace gpuruntime {

/// (true, the largest element) if all elements are subscripts, that is finite integers from 1 on; (true, 0.0) if there
/// is no element; else (false, 0.0). NaN is no subscript.
///
/// Runs on the default stream and waits for the answer. Where the device fails it throws a `std::runtime_error`, where
/// memory for temporaries is missing `std::bad_alloc`.
class CheckValidFindMax {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CheckValidFindMax, T, DoubleTypes);
    GPURUNTIME_API std::pair<bool, double> operator()(const T* input, unsigned long n) const;
  };
};

}  // namespace gpuruntime
