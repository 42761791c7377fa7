/// @file
/// Where recipes take the memory of their intermediate results: from the device, or from a workspace of the caller's.
///
/// A recipe takes all of it before it writes to any array of the caller's, in blocks that it gives back when it ends:
/// if memory is missing, nothing has been written. How many bytes a recipe takes stands beside it: `sumWorkspace<T>(n)`
/// and its like.
#pragma once

#include <gpuruntime/recipes/memory.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <utility>

namespace gpuruntime::recipes {

/// A source of device memory. Derive from it to let recipes use a memory manager of your own.
class Allocator {
 public:
  virtual ~Allocator() = default;

  /// Device memory of `bytes` bytes, more than 0, aligned to 64.
  /// @throws std::bad_alloc, or what derives from it, if there is not as much.
  virtual void* allocate(std::size_t bytes) = 0;

  /// Takes back what allocate() gave. Work of the recipe may still be under way on its stream, so memory that is handed
  /// out again must be used on that stream alone, unless the allocator waits.
  virtual void release(void* memory, std::size_t bytes) noexcept = 0;
};

/// Takes every block from the device and gives it back, which waits for the device where its runtime does so.
class DeviceAllocator : public Allocator {
 public:
  void* allocate(std::size_t bytes) override { return recipes::allocate(bytes); }
  void release(void* memory, std::size_t) noexcept override { recipes::release(memory); }
};

/// What recipes take where the caller names no allocator.
inline Allocator& deviceAllocator() {
  static DeviceAllocator allocator;
  return allocator;
}

/// A workspace is smaller than what a recipe asks of it. The text names both sizes.
class WorkspaceTooSmall : public std::bad_alloc {
 public:
  WorkspaceTooSmall(std::size_t wanted, std::size_t left) noexcept {
    std::snprintf(text_, sizeof(text_), "workspace too small: %zu bytes wanted, %zu left", wanted, left);
  }
  const char* what() const noexcept override { return text_; }

 private:
  char text_[96];
};

/// Hands out a stretch of device memory of the caller's, which has to outlive it, from the front on. No call of the
/// device's memory manager is made. One workspace serves one stream. A block that is given back is free again at once
/// if it was the last one taken, otherwise when none is in use.
class Workspace : public Allocator {
 public:
  /// Of memory aligned to 64 bytes, as DeviceArray and allocate() give it; of other memory the first bytes are left
  /// out.
  Workspace(void* memory, std::size_t bytes) noexcept {
    const std::size_t skipped = (alignment - reinterpret_cast<std::uintptr_t>(memory) % alignment) % alignment;
    begin_ = static_cast<unsigned char*>(memory) + (skipped < bytes ? skipped : bytes);
    bytes_ = skipped < bytes ? bytes - skipped : 0;
  }
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  /// @throws WorkspaceTooSmall
  void* allocate(std::size_t bytes) override {
    const std::size_t left = bytes_ - used_;
    if (bytes > left) throw WorkspaceTooSmall(bytes, left);
    void* const memory = begin_ + used_;
    const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
    used_ += rounded < left ? rounded : left;
    most_ = used_ > most_ ? used_ : most_;
    ++blocks_;
    return memory;
  }

  void release(void* memory, std::size_t bytes) noexcept override {
    const std::size_t begin = static_cast<std::size_t>(static_cast<unsigned char*>(memory) - begin_);
    if (used_ - begin < bytes + alignment) used_ = begin;
    if (--blocks_ == 0) used_ = 0;
  }

  /// Bytes in use, and the most that ever were.
  std::size_t used() const noexcept { return used_; }
  std::size_t most() const noexcept { return most_; }

 private:
  static constexpr std::size_t alignment = 64;

  unsigned char* begin_;
  std::size_t bytes_;
  std::size_t used_ = 0;
  std::size_t most_ = 0;
  std::size_t blocks_ = 0;
};

namespace detail {

/// Bytes that an array of `count` elements takes in a recipe's memory: a multiple of 64.
template <class T>
constexpr std::size_t bytesOf(unsigned long count) {
  return (count * sizeof(T) + 63) / 64 * 64;
}

/// A recipe's memory: one block, of which it cuts arrays from the front on.
class Temporary {
 public:
  Temporary(Allocator& allocator, std::size_t bytes)
      : allocator_(&allocator), bytes_(bytes), memory_(bytes == 0 ? nullptr : allocator.allocate(bytes)) {
    next_ = static_cast<unsigned char*>(memory_);
  }
  Temporary(Temporary&& other) noexcept
      : allocator_(other.allocator_),
        bytes_(other.bytes_),
        memory_(std::exchange(other.memory_, nullptr)),
        next_(other.next_) {}
  Temporary& operator=(Temporary&&) = delete;
  ~Temporary() {
    if (memory_ != nullptr) allocator_->release(memory_, bytes_);
  }

  template <class T>
  T* take(unsigned long count) {
    T* const array = reinterpret_cast<T*>(next_);
    next_ += bytesOf<T>(count);
    return array;
  }

 private:
  Allocator* allocator_;
  std::size_t bytes_;
  void* memory_;
  unsigned char* next_;
};

}  // namespace detail
}  // namespace gpuruntime::recipes
