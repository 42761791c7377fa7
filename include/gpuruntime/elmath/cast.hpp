/// @file
/// Arrays of one element type from arrays of another.
///
/// The conversion of an element, everywhere but in CastToBool:
///
/// - **To a floating type:** rounded to nearest, ties to even. Too large a magnitude gives an infinity; NaN stays NaN.
/// - **From a floating type to an integer:** rounded to nearest, halves away from zero, then clamped to the range of T.
///   NaN gives 0.
/// - **From an integer to an integer:** clamped to the range of T.
/// - **From `bool`:** 1 for every byte but 0, which gives 0.
/// - **To a complex type:** by parts. The imaginary part of a real value is 0.
/// - **To the same type:** every bit is kept, those of a signalling NaN too.
///
/// There is no conversion from complex to real or to `bool`. The arrays must not overlap; that is not checked. n = 0
/// writes no element. All raise MessageError if the device can't be asked for its limits.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpuruntime {

/// `destination[i]` = `source[i]` as a T, 0 <= i < n, by the conversion above.
///
/// The same type on both sides makes one device-to-device copy on the stream, whose status is not looked at.
class CastToReal {
 public:
  template <class T, class U>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CastToReal, T, RealNumericTypes);
    GPURUNTIME_FAMILY_TAKES(CastToReal, U, RealTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* destination, const U* source) const;
  };
};

/// The same with a complex T.
class CastToComplex {
 public:
  template <class T, class U>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CastToComplex, T, ComplexTypes);
    GPURUNTIME_FAMILY_TAKES(CastToComplex, U, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* destination, const U* source) const;
  };
};

/// `destination[destinationOffset + q * destinationPitch + r]` = `source[q * blockLength + r]` as a T, for all
/// 0 <= r < blockLength with q * blockLength + r < n, by the conversion above.
///
/// Offset, pitch and length are in elements, and all sums and products are modulo 2^64. Positions between the blocks
/// stay as they are. Not checked: blockLength is at least 1; blocks do not overlap.
class CastBlockToReal {
 public:
  template <class T, class U>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CastBlockToReal, T, RealNumericTypes);
    GPURUNTIME_FAMILY_TAKES(CastBlockToReal, U, RealTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* destination, const U* source,
                                   unsigned long destinationOffset, unsigned long destinationPitch,
                                   unsigned long blockLength) const;
  };
};

/// The same with a complex T.
class CastBlockToComplex {
 public:
  template <class T, class U>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CastBlockToComplex, T, ComplexTypes);
    GPURUNTIME_FAMILY_TAKES(CastBlockToComplex, U, AllTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, T* destination, const U* source,
                                   unsigned long destinationOffset, unsigned long destinationPitch,
                                   unsigned long blockLength) const;
  };
};

/// `destination[i] = source[i] != 0`, 0 <= i < n. NaN gives 1 and is reported by the error word, and -0 gives 0.
///
/// The Invoker first sets the error word to 1000 on the stream, also for n = 0. If that fails, it returns with nothing
/// launched and nothing reported. The kernel sets the word to 1023 if it meets a NaN. All calls share the one word: to
/// read it for one of them, start no other before getErrorFlag has returned.
class CastToBool {
 public:
  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(CastToBool, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, unsigned long n, bool* destination, const T* source) const;
  };

  /// Waits for the stream and returns the error word: 1000 if the last call on it met no NaN, 1023 if it did, 0 if none
  /// was made, and 1037 if the word can't be read. Throws nothing.
  GPURUNTIME_API unsigned int getErrorFlag(CUstream_st* stream) const;
};

}  // namespace gpuruntime
