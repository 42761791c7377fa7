/// @file
/// Parts of arrays by subscripts that are checked first: gather, scatter, assign.
#pragma once

#include <gpuruntime/indexing/checkvalidfindmax.hpp>
#include <gpuruntime/indexing/sub2ind2sub.hpp>
#include <gpuruntime/indexing/subsasgn.hpp>
#include <gpuruntime/indexing/subsref.hpp>
#include <gpuruntime/recipes/view.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace gpuruntime::recipes {

/// The indices that choose along a dimension: a list in device memory, a range, or all of them. They count from 1.
///
///     gather<int>(stream, part, matrix, {Subscript::range(3, -1, 3), list});      matrix(3:-1:1, list)
///     gather<int>(stream, part, matrix, {Subscript::all(), Subscript::range(2)})  matrix(:, 2)
class Subscript {
 public:
  Subscript(View<const double> list) : list_(std::move(list)), kind_(Kind::list) {}
  Subscript(const View<double>& list) : Subscript(View<const double>(list)) {}
  Subscript(const DeviceArray<double>& list) : Subscript(View<const double>(list)) {}
  Subscript(const DeviceArray<double>&&) = delete;  // Gone at once.

  /// first, first + step, and so on, `count` of them. Whole numbers.
  static Subscript range(double first, double step, unsigned long count) {
    return Subscript(Kind::range, first, step, count);
  }
  /// A single index.
  static Subscript range(double index) { return range(index, 1, 1); }
  /// 1 to the extent.
  static Subscript all() { return Subscript(Kind::all, 1, 1, 0); }

  bool isList() const noexcept { return kind_ == Kind::list; }
  const View<const double>& list() const noexcept { return list_; }
  double2 firstAndStep() const noexcept { return range_; }
  unsigned long count(unsigned long extent) const noexcept {
    return isList() ? list_.size() : kind_ == Kind::all ? extent : count_;
  }

 private:
  enum class Kind { list, range, all };

  Subscript(Kind kind, double first, double step, unsigned long count)
      : list_(nullptr, 0UL), range_{first, step}, count_(count), kind_(kind) {}

  View<const double> list_;
  double2 range_{1, 1};
  unsigned long count_ = 0;
  Kind kind_;
};

namespace detail {

inline bool isIndex(double value, unsigned long extent) {
  return value >= 1 && value == std::floor(value) && value <= static_cast<double>(extent);
}

[[noreturn]] inline void refuseIndex(const std::string& where, unsigned long position, unsigned long extent,
                                     double came) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.17g", came);
  throw std::out_of_range(where + ", position " + std::to_string(position) + ": expected a whole number from 1 to " +
                          std::to_string(extent) + ", came " + text);
}

// Looks for the first bad index, which is there, in pieces.
[[noreturn]] inline void refuseFirstBad(CUstream_st* stream, const std::string& where, const View<const double>& list,
                                        unsigned long extent) {
  std::vector<double> piece(std::min(list.size(), 1UL << 17));
  for (unsigned long at = 0; at < list.size(); at += piece.size()) {
    const unsigned long count = std::min<unsigned long>(piece.size(), list.size() - at);
    copyToHost(piece.data(), list.data() + at, count * sizeof(double), stream);
    synchronise(stream);
    for (unsigned long i = 0; i < count; ++i) {
      if (!isIndex(piece[i], extent)) refuseIndex(where, at + i + 1, extent, piece[i]);
    }
  }
  throw std::runtime_error(where + ": a bad index was there, and is gone: the list changed while it was checked");
}

inline void checkList(CUstream_st* stream, const std::string& where, const View<const double>& list,
                      unsigned long extent) {
  if (list.size() == 0) return;
  synchronise(stream);  // The check runs on the default stream.
  const auto [areIndices, largest] = CheckValidFindMax::Invoker<double>()(list.data(), list.size());
  if (!areIndices || largest > static_cast<double>(extent)) refuseFirstBad(stream, where, list, extent);
}

inline void checkRange(const std::string& where, double2 range, unsigned long count, unsigned long extent) {
  if (count == 0) return;
  if (!isIndex(range.x, extent)) refuseIndex(where, 1, extent, range.x);
  if (count == 1) return;
  if (range.y != std::floor(range.y) || !isIndex(range.x + range.y, extent)) {
    refuseIndex(where, 2, extent, range.x + range.y);
  }
  // The steps that stay inside, counted in whole numbers.
  const double room = range.y > 0 ? static_cast<double>(extent) - range.x : range.x - 1;
  const double inside = range.y == 0 ? static_cast<double>(count) : 1 + std::floor(room / std::abs(range.y));
  if (inside < static_cast<double>(count)) {
    refuseIndex(where, static_cast<unsigned long>(inside) + 1, extent, range.x + inside * range.y);
  }
}

// What the families take for subscripts, checked; trailing dimensions are folded into the last one.
struct Chosen {
  unsigned long extent[3] = {1, 1, 1}, count[3] = {1, 1, 1};
  unsigned long elements = 1;
};

template <class T>
Chosen checked(const char* recipe, CUstream_st* stream, const View<T>& array,
               const std::vector<Subscript>& subscripts) {
  if (subscripts.empty() || subscripts.size() > 3) {
    refuse(recipe, "subscripts: expected 1 to 3, came " + std::to_string(subscripts.size()));
  }
  Chosen chosen;
  for (std::size_t i = 0; i < array.extents().size(); ++i) {
    chosen.extent[std::min(i, subscripts.size() - 1)] *= array.extent(i);
  }
  if (array.size() == 0 && array.extents().empty()) chosen.extent[0] = 0;
  for (std::size_t i = 0; i < subscripts.size(); ++i) {
    const Subscript& subscript = subscripts[i];
    chosen.count[i] = subscript.count(chosen.extent[i]);
    const std::string where = std::string(recipe) + ": subscript " + std::to_string(i + 1);
    if (subscript.isList()) {
      checkList(stream, where, subscript.list(), chosen.extent[i]);
    } else {
      checkRange(where, subscript.firstAndStep(), chosen.count[i], chosen.extent[i]);
    }
  }
  chosen.elements = product({chosen.count[0], chosen.count[1], chosen.count[2]});
  return chosen;
}

// call(index) with a subscript as the type that it has in the families.
template <class Call>
void withKind(const Subscript& subscript, const Call& call) {
  if (subscript.isList()) {
    call(subscript.list().data());
  } else {
    call(subscript.firstAndStep());
  }
}

// call(i1, i2, i3) with null for those that are not there.
template <class Call>
void withKinds(const std::vector<Subscript>& subscripts, const Call& call) {
  void* const absent = nullptr;
  withKind(subscripts[0], [&](auto first) {
    if (subscripts.size() == 1) return call(first, absent, absent);
    withKind(subscripts[1], [&](auto second) {
      if (subscripts.size() == 2) return call(first, second, absent);
      withKind(subscripts[2], [&](auto third) { call(first, second, third); });
    });
  });
}

}  // namespace detail

/// Checks that all of a list are whole numbers from 1 to `extent`.
/// @throws std::out_of_range that names the first one that is not, its position from 1 and its value.
inline void checkSubscripts(CUstream_st* stream, View<const double> list, unsigned long extent) {
  detail::checkList(stream, "checkSubscripts", list, extent);
}

/// `output` = the elements of an array that one to three subscripts choose, side by side, as Subsref3D reads them. Of
/// an array of more dimensions than subscripts the trailing ones are folded into the last subscript's.
///
/// `T` is any element type. A count of 0 does nothing. Lists are checked before anything is written, on the default
/// stream, for which the stream must wait. The output overlaps no input, unchecked.
/// @throws std::out_of_range that names the first bad position of the first bad subscript; std::invalid_argument for
/// another number of subscripts, or an output that does not hold as many elements as are chosen.
template <class T>
void gather(CUstream_st* stream, View<T> output, View<const T> input, const std::vector<Subscript>& subscripts) {
  const detail::Chosen chosen = detail::checked("gather", stream, input, subscripts);
  detail::requireSize("gather", "output", output, chosen.elements);
  if (chosen.elements == 0) return;
  detail::withKinds(subscripts, [&](auto i1, auto i2, auto i3) {
    typename Subsref3D<decltype(i1), decltype(i2), decltype(i3)>::template Invoker<T>()(
        stream, chosen.elements, output.data(), input.data(), chosen.extent[0], chosen.count[0], i1, chosen.extent[1],
        chosen.count[1], i2, chosen.extent[2], chosen.count[2], i3);
  });
}

/// Puts the elements of `source` where one to three subscripts say, as Subsasgn3D does: of several that go to one place
/// one stays. Checks and errors are those of gather.
template <class T>
void scatter(CUstream_st* stream, View<T> destination, View<const T> source, const std::vector<Subscript>& subscripts) {
  const detail::Chosen chosen = detail::checked("scatter", stream, destination, subscripts);
  detail::requireSize("scatter", "source", source, chosen.elements);
  if (chosen.elements == 0) return;
  detail::withKinds(subscripts, [&](auto i1, auto i2, auto i3) {
    typename Subsasgn3D<decltype(i1), decltype(i2), decltype(i3)>::template Invoker<T>()(
        stream, chosen.elements, destination.data(), source.data(), chosen.extent[0], chosen.count[0], i1,
        chosen.extent[1], chosen.count[1], i2, chosen.extent[2], chosen.count[2], i3);
  });
}

/// The same with one value for all places.
template <class T>
void assign(CUstream_st* stream, View<T> destination, T value, const std::vector<Subscript>& subscripts) {
  const detail::Chosen chosen = detail::checked("assign", stream, destination, subscripts);
  if (chosen.elements == 0) return;
  detail::withKinds(subscripts, [&](auto i1, auto i2, auto i3) {
    typename SubsasgnScalar3D<decltype(i1), decltype(i2), decltype(i3)>::template Invoker<T>()(
        stream, chosen.elements, destination.data(), value, chosen.extent[0], chosen.count[0], i1, chosen.extent[1],
        chosen.count[1], i2, chosen.extent[2], chosen.count[2], i3);
  });
}

/// Linear indices of rows, columns and, with three lists, pages in an array of these extents: those of Sub2Ind2D and
/// Sub2Ind3D. The last list's extent is the product of the trailing ones.
/// @throws std::out_of_range that names the first bad position of the first bad list; std::invalid_argument for another
/// number of lists than two or three, or lists of several lengths. Nothing is written then.
inline void linearIndices(CUstream_st* stream, View<double> linear, const std::vector<View<const double>>& lists,
                          const Extents& extents) {
  if (lists.size() != 2 && lists.size() != 3) {
    detail::refuse("linearIndices", "lists: expected 2 or 3, came " + std::to_string(lists.size()));
  }
  for (const auto& list : lists) detail::requireSize("linearIndices", "lists", list, linear.size());
  unsigned long extent[3] = {1, 1, 1};
  for (std::size_t i = 0; i < extents.size(); ++i) extent[std::min(i, lists.size() - 1)] *= extents[i];
  for (std::size_t i = 0; i < lists.size(); ++i) {
    detail::checkList(stream, "linearIndices: list " + std::to_string(i + 1), lists[i], extent[i]);
  }
  if (lists.size() == 2) {
    return Sub2Ind2D::Invoker<double>()(stream, linear.size(), linear.data(), lists[0].data(), lists[1].data(),
                                        extent[0]);
  }
  Sub2Ind3D::Invoker<double>()(stream, linear.size(), linear.data(), lists[0].data(), lists[1].data(), lists[2].data(),
                               extent[0], extent[1]);
}

}  // namespace gpuruntime::recipes
