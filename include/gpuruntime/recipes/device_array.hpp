/// @file
/// An owning array in device memory and an owning stream, for callers that have no memory manager of their own.
#pragma once

#include <gpuruntime/recipes/memory.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace gpuruntime::recipes {

/// A stream that lives as long as this object. Move-only; a moved-from Stream is the null stream.
class Stream {
 public:
  /// @throws std::runtime_error as createStream() does.
  Stream() : handle_(createStream()) {}
  Stream(Stream&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Stream& operator=(Stream&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Stream() { destroyStream(handle_); }

  /// What the library's calls take. May be null.
  CUstream_st* handle() const noexcept { return handle_; }
  operator CUstream_st*() const noexcept { return handle_; }

  /// Waits for all work on this stream.
  /// @throws std::runtime_error if a launch or a copy failed.
  void synchronise() const { recipes::synchronise(handle_); }

 private:
  CUstream_st* handle_;
};

/// A column-major array of T in device memory: element (r, c) of an array of `rows` rows stands at `c * rows + r`.
///
/// Move-only; a moved-from array is empty. It knows its size for good; there is no growing. Copies from and to the host
/// are complete when they return. Give them the stream on which the array's kernels run; with the default, the null
/// stream, they wait for all of them.
///
///     DeviceArray<double> matrix(300, 200);                   // 300 rows, 200 columns, contents unspecified
///     DeviceArray<double> page(hostVector, 300, 200);         // the same shape, filled from the host
///     std::vector<double> back = page.toHost();
template <class T>
class DeviceArray {
  static_assert(std::is_trivially_copyable<T>::value, "elements are copied as bytes");

  template <class... Extents>
  using IfExtents = std::enable_if_t<(std::is_integral<Extents>::value && ...)>;

 public:
  /// No dimensions, no elements.
  DeviceArray() = default;

  /// An array with these extents, rows first, and unspecified contents. An extent may be 0.
  /// @throws std::bad_alloc if the memory is not there or the size can't be expressed.
  template <class... Extents, class = std::enable_if_t<(sizeof...(Extents) > 0)>, class = IfExtents<Extents...>>
  explicit DeviceArray(Extents... extents)
      : extents_{static_cast<unsigned long>(extents)...}, memory_(static_cast<T*>(allocate(checkedBytes(extents_)))) {}

  /// A vector with the elements of `host`.
  explicit DeviceArray(const std::vector<T>& host) : DeviceArray(host.size()) { copyFrom(host); }

  /// An array with these extents and the elements of `host` in column-major order.
  /// @throws std::invalid_argument unless `host` holds exactly as many.
  template <class... Extents, class = IfExtents<Extents...>>
  DeviceArray(const std::vector<T>& host, unsigned long rows, Extents... more) : DeviceArray(rows, more...) {
    copyFrom(host);
  }

  /// An array with these extents and as many elements from `host` on.
  template <class... Extents, class = IfExtents<Extents...>>
  DeviceArray(const T* host, unsigned long rows, Extents... more) : DeviceArray(rows, more...) {
    copyFrom(host, size());
  }

  DeviceArray(DeviceArray&&) noexcept = default;
  DeviceArray& operator=(DeviceArray&&) noexcept = default;

  /// Pointer into device memory; null for an array without elements.
  T* data() noexcept { return memory_.get(); }
  const T* data() const noexcept { return memory_.get(); }

  /// Number of elements.
  unsigned long size() const noexcept {
    if (extents_.empty()) return 0;
    unsigned long count = 1;
    for (const unsigned long extent : extents_) count *= extent;
    return count;
  }
  std::size_t bytes() const noexcept { return size() * sizeof(T); }

  /// Number of extents it was made with.
  std::size_t dimensions() const noexcept { return extents_.size(); }

  /// Extent of dimension `dimension`, counted from 0, the rows: 1 behind the last.
  unsigned long extent(std::size_t dimension) const noexcept {
    return dimension < extents_.size() ? extents_[dimension] : 1;
  }

  /// Overwrites all elements.
  /// @throws std::invalid_argument, and changes nothing, unless the source holds exactly size() elements.
  void copyFrom(const T* host, std::size_t count, CUstream_st* stream = nullptr) {
    requireSize(count);
    copyToDevice(data(), host, bytes(), stream);
    synchronise(stream);
  }
  void copyFrom(const std::vector<T>& host, CUstream_st* stream = nullptr) {
    requireSize(host.size());
    if constexpr (std::is_same<T, bool>::value) {
      // The vector packs its bits; the device takes one byte each.
      const std::unique_ptr<bool[]> unpacked(new bool[host.size()]);
      std::copy(host.begin(), host.end(), unpacked.get());
      copyFrom(unpacked.get(), host.size(), stream);
    } else {
      copyFrom(host.data(), host.size(), stream);
    }
  }

  /// Overwrites all elements with those of another array on the device. Only queued on the stream, as a kernel is.
  void copyFrom(const DeviceArray& other, CUstream_st* stream = nullptr) {
    requireSize(other.size());
    if (this != &other) copyOnDevice(data(), other.data(), bytes(), stream);
  }

  /// All elements, in column-major order, when the work queued on `stream` before is done.
  /// @throws std::runtime_error if that work, or the copy, failed.
  std::vector<T> toHost(CUstream_st* stream = nullptr) const {
    if constexpr (std::is_same<T, bool>::value) {
      const std::unique_ptr<bool[]> unpacked(new bool[size()]);
      copyTo(unpacked.get(), size(), stream);
      return std::vector<bool>(unpacked.get(), unpacked.get() + size());
    } else {
      std::vector<T> host(size());
      copyTo(host.data(), host.size(), stream);
      return host;
    }
  }

  /// The same, into `count` elements of the caller's.
  /// @throws std::invalid_argument unless `count` is size().
  void copyTo(T* host, std::size_t count, CUstream_st* stream = nullptr) const {
    requireSize(count);
    copyToHost(host, data(), bytes(), stream);
    synchronise(stream);
  }

 private:
  struct Release {
    void operator()(T* memory) const noexcept { release(memory); }
  };

  static std::size_t checkedBytes(const std::vector<unsigned long>& extents) {
    // One extent of 0 makes an empty array, however large the others.
    if (std::find(extents.begin(), extents.end(), 0UL) != extents.end()) return 0;
    std::size_t bytes = sizeof(T);
    for (const unsigned long extent : extents) {
      if (extent > SIZE_MAX / bytes) throw std::bad_array_new_length();
      bytes *= extent;
    }
    return bytes;
  }

  void requireSize(std::size_t count) const {
    if (count != size()) throw std::invalid_argument("DeviceArray: the number of elements differs from the array's");
  }

  std::vector<unsigned long> extents_;
  std::unique_ptr<T, Release> memory_;
};

}  // namespace gpuruntime::recipes
