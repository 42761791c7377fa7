/// @file
/// Assignment to parts of an array by subscripts.
#pragma once

#include <gpuruntime/export.hpp>
#include <gpuruntime/subscriptkinds.hpp>

namespace gpuruntime {

/// Puts an array's elements where up to three subscripts say. With i1, i2, i3 the indices of the subscripts (see
/// subscriptkinds.hpp) and 0 <= x < count1, 0 <= y < count2, 0 <= z < count3,
///
///     one    destination[i1(x) - 1] = source[x], 0 <= x < n
///     two    destination[i1(x) - 1 + extent1 * (i2(y) - 1)] = source[count1 * y + x]
///     three  destination[i1(x) - 1 + extent1 * (i2(y) - 1 + extent2 * (i3(z) - 1))]
///                = source[(count2 * z + y) * count1 + x]
///
/// Other elements stay, and all move as they are. Where several elements go to one place, it holds one of them
/// afterwards; which one is not defined, and need not be the same in two calls. n is looked at with one subscript
/// alone, where count1 is not; the extent of the last subscript is not looked at, nor what belongs to an absent one. A
/// count of 0 does nothing. Raises MessageError if the device can't be asked for its limits.
///
/// Not checked: that indices lie from 1 to their extent, and that the arrays don't overlap. For the first, see
/// IndexValidation, Sub2Ind2DChecked and SubsasgnGuard.
template <class I1, class I2, class I3>
class Subsasgn3D {
 public:
  GPURUNTIME_SUBSCRIPT_FAMILY_TAKES(Subsasgn3D, I1, I2, I3);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Subsasgn3D, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* destination, const T* source,
                                   unsigned long extent1, unsigned long count1, I1 index1, unsigned long extent2,
                                   unsigned long count2, I2 index2, unsigned long extent3, unsigned long count3,
                                   I3 index3) const;
  };
};

/// The same with one value for all places, whose bits are stored as they are. Repeated places make no difference.
template <class I1, class I2, class I3>
class SubsasgnScalar3D {
 public:
  GPURUNTIME_SUBSCRIPT_FAMILY_TAKES(SubsasgnScalar3D, I1, I2, I3);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(SubsasgnScalar3D, T, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* destination, T value, unsigned long extent1,
                                   unsigned long count1, I1 index1, unsigned long extent2, unsigned long count2,
                                   I2 index2, unsigned long extent3, unsigned long count3, I3 index3) const;
  };
};

/// The guard of Subsasgn3D and SubsasgnScalar3D, as SubsrefGuard is that of Subsref3D: a place of which an index lies
/// outside its extent is not written.
class SubsasgnGuard {
 public:
  /// As SubsrefGuard::getErrorFlag, of a word that the two families share.
  GPURUNTIME_API unsigned int getErrorFlag(CUstream_st* stream) const;
};

}  // namespace gpuruntime
