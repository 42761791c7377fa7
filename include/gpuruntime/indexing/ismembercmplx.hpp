/// @file
/// Which elements of a complex array occur in another one, and where.
///
/// B need not be sorted. Two elements are equal if their real parts are, and their imaginary parts; -0 equals +0, and
/// an element with a NaN part equals nothing. The data are `double2` in every member of a family: the caller has
/// widened elements of type T.
///
/// nB = 0 makes every element a non-member, nA = 0 writes nothing. That outputs and inputs do not overlap is not
/// checked.
///
/// B is sorted on the default stream, which the call waits for; the search is one launch on `stream`. 24 bytes of
/// device memory for each element of B are taken meanwhile, and as much again by the sort. Where they are missing the
/// call throws `std::bad_alloc`, where the device fails a `std::runtime_error`, and it raises MessageError if the
/// device can't be asked for its limits; the outputs may then be partly written.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `member[i]` = 1 if some element of B equals `A[i]`, else 0, 0 <= i < nA.
class IsMember1ArgCmplx {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsMember1ArgCmplx, T, ComplexMemberTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, const double2* A, unsigned long nA, const double2* B,
                                   unsigned long nB, bool* member) const;
  };
};

/// IsMember1ArgCmplx, and `location[i]` = j + 1 with `B[j]` the first element of B that equals `A[i]`, or 0.0 for a
/// non-member.
class IsMember2ArgCmplx {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(IsMember2ArgCmplx, T, ComplexMemberTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, const double2* A, unsigned long nA, const double2* B,
                                   unsigned long nB, bool* member, double* location) const;
  };
};

}  // namespace gpuruntime
