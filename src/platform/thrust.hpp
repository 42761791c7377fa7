/// @file
/// Thrust, for the units that leave sorts, scans and searches to it: `gpuruntime::thrust`.
///
/// Its algorithms run by the policy `thrust::device`, on raw pointers to device memory: on the default stream of a
/// device, on all cores of the cpu. They return when they have run. Their errors are exceptions: `std::bad_alloc` where
/// memory for their temporaries is missing, a `std::runtime_error` where the device fails.
#pragma once

// The backend's choice of THRUST_DEVICE_SYSTEM.
#include "thrustsystem.hpp"

#include "platform.hpp"

// A program with a Thrust of its own, of another version, can load the library.
#define THRUST_CUB_WRAPPED_NAMESPACE gpuruntimethrust

#include <thrust/device_free.h>
#include <thrust/device_malloc.h>
#include <thrust/execution_policy.h>
#include <thrust/functional.h>
#include <thrust/inner_product.h>
#include <thrust/iterator/transform_iterator.h>
#include <thrust/iterator/zip_iterator.h>
#include <thrust/partition.h>
#include <thrust/reduce.h>
#include <thrust/sequence.h>
#include <thrust/sort.h>
#include <thrust/transform.h>
#include <thrust/tuple.h>

#include <cstdint>
#include <new>

namespace gpuruntime {

namespace thrust = THRUST_NS_QUALIFIER;

namespace platform {

/// Device memory for n elements, uninitialised, for the length of a call. Throws `std::bad_alloc` where there is none,
/// and for more elements than an address can count the bytes of.
template <class T>
class Temporary {
 public:
  explicit Temporary(unsigned long n) : memory_(thrust::device_malloc<T>(checkedCount(n))) {
    if (n > 0 && memory_.get() == nullptr) throw std::bad_alloc();
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  ~Temporary() { thrust::device_free(memory_); }

  T* data() const { return memory_.get(); }

 private:
  static unsigned long checkedCount(unsigned long n) {
    if (n > PTRDIFF_MAX / sizeof(T)) throw std::bad_alloc();
    return n;
  }

  thrust::device_ptr<T> memory_;
};

}  // namespace platform
}  // namespace gpuruntime
