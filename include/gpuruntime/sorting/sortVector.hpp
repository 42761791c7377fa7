/// @file
/// Sorts of vectors, in place.
///
/// They run on the default stream and have ended when the call returns. Where memory for temporaries is missing they
/// throw `std::bad_alloc`, where the device fails a `std::runtime_error`; the data may then be partly sorted.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// Sorts `data[0, n)`, ascending or descending. `index`, if it is not null, holds n values, which move with their
/// elements; whatever they are, their bits are kept.
///
/// - Equal elements keep their order, descending too.
/// - NaNs, and complex values with a NaN part, stand behind all others if ascending, in front of them if descending.
///   They keep their order, and their bits.
/// - Signed zeros: with an index -0 and +0 are equal. Without, -0 is less than +0, and so comes first if ascending.
/// - Complex values ascend by magnitude sqrt(x^2 + y^2). Values of the same magnitude ascend by the smaller of their
///   parts in magnitude, if the larger is the same, and otherwise by angle in [-pi, pi]; infinite magnitudes are told
///   apart by those of the halved values first. -0 counts in the angle: (-1, -0) has the angle -pi. Magnitude and angle
///   are those of IEEE operations rounded one by one, so the order is the same on every machine and backend. Where they
///   are equal by rounding alone, that order may run in a circle; among such values the result is some order.
///
/// n = 0 does nothing.
class SortVector {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SortVector, T, SortTypes);
    GPURUNTIME_API void operator()(T* data, double* index, unsigned long n, bool ascending) const;
  };
};

/// Sorts `data[0, n)`, ascending, as SortVector does without an index, but doesn't look for NaNs: one with a clear sign
/// bit comes out behind all numbers, one with a set sign bit in front of them. n = 0 does nothing.
class SimpleSort {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SimpleSort, T, DoubleTypes);
    GPURUNTIME_API void operator()(T* data, unsigned long n) const;
  };
};

}  // namespace gpuruntime
