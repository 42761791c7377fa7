/// @file
/// The operators that reductions and scans combine elements by: an identity, and `apply(a, b)` with the running value,
/// or that of the lower lane, on the left.
#pragma once

#include "gpucommon/CUDAOps.hpp"
#include "gpucommon/CUDATraits.hpp"

namespace gpuruntime::reductionoperators {

/// `gpucommon::add`: rounded in floating types, saturating for integers, logical or for `bool`, by parts for complex
/// types. The identity is +0, so that -0 combined with it becomes +0.
template <class T>
struct Sum {
  static GPURUNTIME_DEVICE T identity() { return gpucommon::CUDATraits<T>::getZero(); }
  static GPURUNTIME_DEVICE T apply(const T& a, const T& b) { return gpucommon::add(a, b); }
};

/// `gpucommon::multiply`: rounded in floating types, saturating for integers to 32 bits, modulo 2^width for 64-bit and
/// complex integers, logical and for `bool`, `ctimes` for floating complex types. The identity is 1, or (1, 0).
template <class T>
struct Prod {
  static GPURUNTIME_DEVICE T identity() { return gpucommon::CUDATraits<T>::getOne(); }
  static GPURUNTIME_DEVICE T apply(const T& a, const T& b) { return gpucommon::multiply(a, b); }
};

// And and Or take their truth values in any type, as 0 and 1. They are joined by & and |: with && and || the loops over
// lanes would keep branches.

struct And {
  static GPURUNTIME_DEVICE bool identity() { return true; }
  template <class Flag>
  static GPURUNTIME_DEVICE Flag apply(Flag a, Flag b) {
    return a & b;
  }
};

struct Or {
  static GPURUNTIME_DEVICE bool identity() { return false; }
  template <class Flag>
  static GPURUNTIME_DEVICE Flag apply(Flag a, Flag b) {
    return a | b;
  }
};

}  // namespace gpuruntime::reductionoperators
