/// @file
/// Subscripts for the tests of gathers and scatters: what a caller passes, and the positions that it stands for.
#pragma once

#include <memory>

#include "support/familytest.hpp"

namespace testsupport {

/// Stands for whatever is not to be looked at.
inline constexpr unsigned long anything = 0xDEADBEEFDEADBEEF;

/// A subscript of a dimension of some extent, of which `variant` says what it chooses.
template <class I>
class TestSubscript;

template <>
class TestSubscript<void*> {
 public:
  TestSubscript(unsigned long, unsigned int) {}

  std::vector<unsigned long> positions{0};
  unsigned long extent = anything, count = anything;
  void* index = reinterpret_cast<void*>(anything);
};

template <>
class TestSubscript<double2> {
 public:
  TestSubscript(unsigned long size, unsigned int variant) : extent(size), count(size) {
    const auto last = static_cast<double>(size);
    switch (variant % 4) {
      case 0:
        index = {1, 1};
        break;
      case 1:
        index = {last, -1};
        break;
      case 2:  // Truncated to (1, 2), and then summed.
        index = {1.9, 2.9};
        count = (size + 1) / 2;
        break;
      case 3:
        index = {last, 0};
        break;
    }
    for (unsigned long k = 0; k < count; ++k) {
      positions.push_back(static_cast<unsigned long>(std::trunc(index.x) + std::trunc(index.y) * k) - 1);
    }
  }

  std::vector<unsigned long> positions;
  unsigned long extent, count;
  double2 index;
};

template <>
class TestSubscript<const double*> {
 public:
  TestSubscript(unsigned long size, unsigned int variant) : extent(size) {
    HostArray<double> list(variant % 3 == 2 ? size + size / 2 : size);
    std::minstd_rand next(variant + 1);
    for (unsigned long k = 0; k < list.size(); ++k) {
      switch (variant % 3) {
        case 0:
          list[k] = static_cast<double>(k + 1);
          break;
        case 1:
          list[k] = static_cast<double>((k * 7919 + 3) % size + 1) + 0.9;
          break;  // No repeats: 7919 is a prime.
        case 2:
          list[k] = static_cast<double>((next() >> 4) % size + 1);
          break;
      }
      positions.push_back(static_cast<unsigned long>(list[k]) - 1);
    }
    onDevice_ = std::make_unique<GuardedArray<double>>(list, 1);
    count = list.size();
    index = onDevice_->data();
  }

  std::vector<unsigned long> positions;
  unsigned long extent, count;
  const double* index;

 private:
  std::unique_ptr<GuardedArray<double>> onDevice_;
};

/// The subscripts of one call, all together.
template <class I1, class I2, class I3>
struct Subscripted {
  static constexpr unsigned int rank = 1 + !std::is_same_v<I2, void*> + !std::is_same_v<I3, void*>;

  TestSubscript<I1> first;
  TestSubscript<I2> second;
  TestSubscript<I3> third;

  /// Calls an Invoker; arguments that a form doesn't take hold anything. A library with a guard takes all extents.
  template <class Invoker, class Out, class In>
  void call(const Invoker& invoker, Out out, In in, bool isGuarded) const {
    const auto extentOf = [=](unsigned int dim, unsigned long extent) {
      return dim < rank || isGuarded ? extent : anything;
    };
    invoker(nullptr, rank == 1 ? first.count : anything, out, in, extentOf(1, first.extent),
            rank == 1 ? anything : first.count, first.index, extentOf(2, second.extent), second.count, second.index,
            extentOf(3, third.extent), third.count, third.index);
  }

  /// Places in the subscripted array, in order.
  std::vector<unsigned long> places() const {
    std::vector<unsigned long> all;
    for (const unsigned long z : third.positions) {
      for (const unsigned long y : second.positions) {
        for (const unsigned long x : first.positions) {
          all.push_back(x + (rank < 2 ? 0 : first.extent * (y + (rank < 3 ? 0 : second.extent * z))));
        }
      }
    }
    return all;
  }

  unsigned long arraySize() const {
    return first.extent * (rank < 2 ? 1 : second.extent) * (rank < 3 ? 1 : third.extent);
  }
};

/// Runs `check(subscripted, context)` on small arrays of all shapes, and on one that is written past the caches.
template <class T, class I1, class I2, class I3, class Check>
void forEachSelection(gpuruntime::SubscriptKinds<I1, I2, I3>, Check check) {
  constexpr unsigned int rank = Subscripted<I1, I2, I3>::rank;
  constexpr unsigned long large = (17UL << 18) / sizeof(T);
  std::vector<std::vector<unsigned long>> shapes{{1, 1, 1},   {3, 2, 5},   {5, 300, 4},
                                                 {300, 7, 3}, {2, 3, 700}, {40, 1, 1}};
  if (rank == 1) {
    shapes = {{1}, {255}, {257}, {4099}, {large}};
  } else {
    shapes.push_back(rank == 2 ? std::vector<unsigned long>{large / 90, 90}
                               : std::vector<unsigned long>{999, large / 9990, 10});
  }
  for (std::vector<unsigned long>& shape : shapes) {
    shape.resize(3, 1);
    const bool isLarge = shape[0] * shape[1] * shape[2] > 10000;
    for (unsigned int variant = 0; variant < (isLarge ? 1 : 4); ++variant) {
      const unsigned int next = variant == 0 ? 0 : 1;  // Variant 0 is the whole array.
      const Subscripted<I1, I2, I3> subscripted{
          {shape[0], variant}, {shape[1], variant + next}, {shape[2], variant + 2 * next}};
      check(subscripted, std::to_string(rank) + " subscripts, " + std::to_string(shape[0]) + " by " +
                             std::to_string(shape[1]) + " by " + std::to_string(shape[2]) + ", variant " +
                             std::to_string(variant));
    }
  }
}

template <class... Kinds, class Run>
void forEachKinds(gpuruntime::TypeList<Kinds...>, Run run) {
  (run(Kinds{}), ...);
}

/// One type of each width.
using OfEachWidth = ::testing::Types<signed char, short, float, double, double2>;

}  // namespace testsupport
