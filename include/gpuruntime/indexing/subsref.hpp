/// @file
/// Parts of an array by subscripts.
#pragma once

#include <gpuruntime/export.hpp>
#include <gpuruntime/subscriptkinds.hpp>

namespace gpuruntime {

/// The elements that up to three subscripts choose, side by side. With i1, i2, i3 the indices of the subscripts (see
/// subscriptkinds.hpp) and 0 <= x < count1, 0 <= y < count2, 0 <= z < count3,
///
///     one    output[x]                         = input[i1(x) - 1], 0 <= x < n
///     two    output[count1 * y + x]            = input[i1(x) - 1 + extent1 * (i2(y) - 1)]
///     three  output[(count2 * z + y) * count1 + x] = input[i1(x) - 1 + extent1 * (i2(y) - 1 + extent2 * (i3(z) - 1))]
///
/// Elements move as they are. n is looked at with one subscript alone, where count1 is not; the extent of the last
/// subscript is not looked at, nor what belongs to an absent one. A count of 0 does nothing. Raises MessageError if the
/// device can't be asked for its limits.
///
/// Not checked: that indices lie from 1 to their extent, and that the arrays don't overlap. For the first, see
/// IndexValidation, Sub2Ind2DChecked and SubsrefGuard.
template <class I1, class I2, class I3>
class Subsref3D {
 public:
  GPURUNTIME_SUBSCRIPT_FAMILY_TAKES(Subsref3D, I1, I2, I3);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Subsref3D, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* output, const T* input,
                                   unsigned long extent1, unsigned long count1, I1 index1, unsigned long extent2,
                                   unsigned long count2, I2 index2, unsigned long extent3, unsigned long count3,
                                   I3 index3) const;
  };
};

/// The guard of Subsref3D, for debugging: in libraries built with GPURUNTIME_CHECK_INDICES, an output element of which
/// an index lies outside 1 to its extent is left as it is, and the error word of the unit says so. The guard looks at
/// the extent of every subscript that is there, the last one too.
///
/// A guarded Invoker first sets the word to 1000 on the stream, also where there is nothing to do; if that fails, it
/// returns with nothing launched and nothing reported. All calls share the one word.
class SubsrefGuard {
 public:
  /// Waits for the stream and returns the error word: 1000 if the last call met no index outside its extent, 1030 if it
  /// did, 0 if there was no call or the library has no guard, and 1037 if the word can't be read. Throws nothing.
  GPURUNTIME_API unsigned int getErrorFlag(CUstream_st* stream) const;
};

}  // namespace gpuruntime
