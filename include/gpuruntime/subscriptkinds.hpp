/// @file
/// The kinds of subscript that gathers and scatters take. What a caller passes for a subscript is (extent, count,
/// index): the size of the array along the subscript's dimension, the number of indices chosen, and one of
///
/// | kind   | type            | index number k, 0 <= k < count |
/// |--------|-----------------|-------------------------------|
/// | list   | `const double*` | list[k], truncated towards 0  |
/// | range  | `double2`       | trunc(x) + trunc(y) * k       |
/// | absent | `void*`         | none                          |
///
/// A list is a device array, in any order, with repeats allowed. The step y of a range may be negative or 0. What is
/// passed for an absent subscript is not looked at.
///
/// Indices count from 1. A whole dimension is the range (1, 1). Only absent subscripts follow an absent one, and the
/// first is there, which makes 14 combinations. An array of more dimensions than subscripts has its trailing ones
/// folded into the last subscript's: the caller passes their product as its extent.
///
/// Truncation ends at the nearest end of the 64-bit range (unsigned for a list, signed for a range), and takes NaN to
/// 0; sums and products are modulo 2^64.
#pragma once

#include <gpuruntime/elementtypes.hpp>

// Each combination as X(A, I1, I2, I3), with A handed through.
#define GPURUNTIME_SUBSCRIPT_KINDS(X, A)            \
  X(A, const double*, void*, void*)                 \
  X(A, double2, void*, void*)                       \
  X(A, const double*, const double*, void*)         \
  X(A, const double*, double2, void*)               \
  X(A, double2, const double*, void*)               \
  X(A, double2, double2, void*)                     \
  X(A, const double*, const double*, const double*) \
  X(A, const double*, const double*, double2)       \
  X(A, const double*, double2, const double*)       \
  X(A, const double*, double2, double2)             \
  X(A, double2, const double*, const double*)       \
  X(A, double2, const double*, double2)             \
  X(A, double2, double2, const double*)             \
  X(A, double2, double2, double2)

namespace gpuruntime {

/// One combination of kinds.
template <class I1, class I2, class I3>
struct SubscriptKinds {};

#define GPURUNTIME_SUBSCRIPT_KINDS_MEMBER(A, I1, I2, I3) SubscriptKinds<I1, I2, I3>,

/// The 14 combinations.
using AllSubscriptKinds =
    detail::ListBuilder<TypeList<>,
                        GPURUNTIME_SUBSCRIPT_KINDS(GPURUNTIME_SUBSCRIPT_KINDS_MEMBER, ) detail::ListEnd>::type;

}  // namespace gpuruntime

/// Stands first in every family of subscripts: a combination that there isn't is refused by name, at compile time.
#define GPURUNTIME_SUBSCRIPT_FAMILY_TAKES(Family, I1, I2, I3)                             \
  static_assert(::gpuruntime::detail::IsMember<::gpuruntime::SubscriptKinds<I1, I2, I3>,  \
                                               ::gpuruntime::AllSubscriptKinds>::value,   \
                "gpuruntime::" #Family                                                    \
                " has no member for these subscripts: it takes const double* or double2 " \
                "for each, and void* for the last one or two")
