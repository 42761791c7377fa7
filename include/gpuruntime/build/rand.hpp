/// @file
/// Random arrays. Element e holds sample e of a stream that begins at the caller's state, whatever the device.
///
/// All calls take the state from the host's memory, read it before they return, and don't change it: advanceState moves
/// it on. On one device, calls that are in flight at the same time stand on one stream, since they share one copy of
/// the state there. n = 0 writes nothing. A state that can't be copied to the device ends a call silently.
/// MRG32K3AGenerator raises MessageError if the device can't be asked for its limits; so do all if the grid can't be
/// chosen.
///
/// The uniform samples u, in double. With c = 0x1.fffffffffffffp-54, a little below 2^-53, and `out` the words of a
/// generator block:
///
///     Philox4x32Generator    fma(u53, c, c), u53 = (out[0] << 21) ^ out[1], then (out[2] << 21) ^ out[3]
///     ThreeFry4x64Generator  fma(u53, c, c), u53 = out[i] >> 11, i = 0 to 3
///     MRG32K3AGenerator      z1 / (m1 + 1) + (z2 / (m1 + 1)) / 2^24 of two raw results, less 1 if that is 1 or more;
///                            the quotients are products with 0x1.000000d00000bp-32
///
/// So u of the first two lies in [c, 1 - 2^-53], that of the third in [0, 1).
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>
#include <gpuruntime/randgenerators.hpp>

namespace gpuruntime {

/// Uniform values: u, rounded to T. In float the largest u give 1.
template <class G>
class Rand {
 public:
  GPURUNTIME_GENERATOR_FAMILY_TAKES(Rand, G, AllGenerators);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(Rand, T, RealFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* out, unsigned int* state, unsigned long n) const;
  };
};

/// Uniform integers from `lo` to `hi`, both included: lo + floor((hi - lo + 1) * u), each operation rounded in double,
/// then converted to T: rounded half away from zero to an integer T, and saturated; rounded to float.
///
/// Nothing is rejected: the values of a range that is no power of two differ in frequency by up to one part in 2^53 /
/// (hi - lo + 1), and a range above 2^53 has gaps, as double has. lo <= hi is not checked; a NaN bound gives the T of a
/// NaN, 0 for an integer T.
template <class G>
class RandI {
 public:
  GPURUNTIME_GENERATOR_FAMILY_TAKES(RandI, G, AllGenerators);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(RandI, T, RealNumericTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* out, unsigned int* state, double lo, double hi,
                                   unsigned long n) const;
  };
};

/// Standard normal values in pairs, from the pairs (u0, u1) that a generator block holds: r * cos(a) and r * sin(a),
/// with r = sqrt(-2 * log(u0)) and a = 6.283185307179586 * u1, in double, then rounded to T.
///
/// A value at an odd place of the stream is the same whether or not its partner is wanted. |value| < 8.6. G. E. P. Box
/// and M. E. Muller, "A note on the generation of random normal deviates", Ann. Math. Statist. 29 (1958).
template <class G>
class RandNBoxMuller {
 public:
  GPURUNTIME_GENERATOR_FAMILY_TAKES(RandNBoxMuller, G, CounterBasedGenerators);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(RandNBoxMuller, T, RealFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* out, unsigned int* state, unsigned long n) const;
  };
};

/// Standard normal values, one of each sample, by inversion: -1.4142135623730951 * erfcinv(2 * u) in double, then
/// rounded to T. Rising with u. u = 0, of MRG32K3AGenerator alone, gives -Inf.
template <class G>
class RandNInversion {
 public:
  GPURUNTIME_GENERATOR_FAMILY_TAKES(RandNInversion, G, AllGenerators);

  template <class T>
  struct Invoker {
    GPURUNTIME_FAMILY_TAKES(RandNInversion, T, RealFloatTypes);
    GPURUNTIME_API void operator()(CUstream_st* stream, T* out, unsigned int* state, unsigned long n) const;
  };
};

namespace rand {

/// Moves a state on by n samples, so that the next call goes on where a call for n values ended: n1 values and then n2
/// from the state moved on are the n1 + n2 values of one call, to the bit. A host function, which takes the same time
/// for any n with the counter-based generators, and some microseconds with MRG32K3AGenerator.
///
/// The counter wraps around after its last value. Words that no sample depends on (the higher bits of the position)
/// come out as 0.
template <class G>
GPURUNTIME_API void advanceState(unsigned int* state, unsigned long n);

}  // namespace rand
}  // namespace gpuruntime
