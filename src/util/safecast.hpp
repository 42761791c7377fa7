/// @file
/// Checked conversion between integer types.
#pragma once

#include <boost/numeric/conversion/cast.hpp>

namespace gpuruntime::util {

namespace detail {
/// Raises `vantor::gpu::array::InvalidValue`.
void throwBadNumericCast();
}  // namespace detail

/// `value` as a To. Raises `vantor::gpu::array::InvalidValue` where To has no such value.
template <class To, class From>
To safeCast(From value) {
  try {
    return boost::numeric_cast<To>(value);
  } catch (const boost::numeric::bad_numeric_cast&) {
    detail::throwBadNumericCast();
    throw;  // Not reached: the host environment's raise does not return.
  }
}

}  // namespace gpuruntime::util
