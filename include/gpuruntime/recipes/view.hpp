/// @file
/// Arrays as recipes take them: a pointer into device memory with its extents.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace gpuruntime::recipes {

/// Extents of a column-major array, rows first.
using Extents = std::vector<unsigned long>;

namespace detail {

template <class T>
inline constexpr bool isComplex = ::gpuruntime::detail::IsMember<T, ComplexTypes>::value;

/// Ends the recipe: "convolve: output: expected 12 elements, came 10".
[[noreturn]] inline void refuse(const char* recipe, const std::string& what) {
  throw std::invalid_argument(std::string(recipe) + ": " + what);
}

inline std::string inWords(const Extents& extents) {
  std::string words;
  for (const unsigned long extent : extents) words += (words.empty() ? "" : " x ") + std::to_string(extent);
  return words.empty() ? "no extents" : words;
}

/// Number of elements; an extent of 0 makes an empty array, however large the others.
/// @throws std::length_error if it is 2^64 or more.
inline unsigned long product(const Extents& extents) {
  unsigned long count = extents.empty() ? 0 : 1;
  bool tooLarge = false;
  for (const unsigned long extent : extents) {
    if (extent == 0) return 0;
    tooLarge = tooLarge || count > std::numeric_limits<unsigned long>::max() / extent;
    count *= extent;
  }
  if (tooLarge) throw std::length_error("an array of " + inWords(extents) + " elements has too many");
  return count;
}

}  // namespace detail

/// An array of someone else's. Copies are views of the same elements. A DeviceArray becomes one by itself.
template <class T>
class View {
  using Element = std::remove_const_t<T>;

 public:
  /// @throws std::invalid_argument if `data` is null and there are elements.
  View(T* data, Extents extents) : data_(data), extents_(std::move(extents)), size_(detail::product(extents_)) {
    if (data == nullptr && size_ != 0)
      detail::refuse("View", "expected memory of " + std::to_string(size_) + " elements, came a null pointer");
  }
  View(T* data, unsigned long count) : View(data, Extents{count}) {}
  View(T* data, std::initializer_list<unsigned long> extents) : View(data, Extents(extents)) {}

  template <class Array, class = std::enable_if_t<std::is_same_v<std::remove_const_t<Array>, DeviceArray<Element>> &&
                                                  (std::is_const_v<T> || !std::is_const_v<Array>)>>
  View(Array& array) : data_(array.data()), size_(array.size()) {
    for (std::size_t i = 0; i < array.dimensions(); ++i) extents_.push_back(array.extent(i));
  }
  template <class Other, class = std::enable_if_t<std::is_same_v<const Other, T>>>
  View(const View<Other>& other) : data_(other.data()), extents_(other.extents()), size_(other.size()) {}

  T* data() const noexcept { return data_; }
  const Extents& extents() const noexcept { return extents_; }
  unsigned long size() const noexcept { return size_; }

  /// Extent of dimension `dimension`, counted from 0, the rows: 1 behind the last.
  unsigned long extent(std::size_t dimension) const noexcept {
    return dimension < extents_.size() ? extents_[dimension] : 1;
  }

  /// True of a column, a row, and any array of which all extents but one are 1.
  bool isVector() const noexcept {
    unsigned long longer = 0;
    for (const unsigned long extent : extents_) longer += extent == 1 ? 0 : 1;
    return longer <= 1;
  }

  /// The same elements with other extents.
  /// @throws std::invalid_argument unless they make as many elements.
  View reshaped(Extents extents) const {
    if (detail::product(extents) != size_) {
      detail::refuse("View::reshaped",
                     "expected " + std::to_string(size_) + " elements, came " + detail::inWords(extents));
    }
    return View(data_, std::move(extents));
  }

 private:
  T* data_;
  Extents extents_;
  unsigned long size_;
};

namespace detail {

template <class T>
void requireSize(const char* recipe, const char* array, const View<T>& view, unsigned long expected) {
  if (view.size() != expected) {
    refuse(recipe, std::string(array) + ": expected " + std::to_string(expected) + " elements, came " +
                       std::to_string(view.size()));
  }
}

template <class T>
void requireVector(const char* recipe, const char* array, const View<T>& view) {
  if (!view.isVector()) refuse(recipe, std::string(array) + ": expected a vector, came " + inWords(view.extents()));
}

/// A dimension of an array: its length L, the product S of the extents in front of it, the product O of those behind.
struct Line {
  unsigned long S = 1, L = 1, O = 1;
};

inline Line lineAlong(const char* recipe, const Extents& extents, std::size_t dimension) {
  if (dimension >= extents.size()) {
    refuse(recipe, "dimension: expected one of " + std::to_string(extents.size()) + ", counted from 0, came " +
                       std::to_string(dimension));
  }
  Line line;
  for (std::size_t i = 0; i < extents.size(); ++i) {
    unsigned long& part = i < dimension ? line.S : i == dimension ? line.L : line.O;
    part *= extents[i];
  }
  return line;
}

}  // namespace detail
}  // namespace gpuruntime::recipes
