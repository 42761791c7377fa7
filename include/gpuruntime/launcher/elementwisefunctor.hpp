/// @file
/// What functors of the elementwise launchers may promise.
#pragma once

#include <gpuruntime/launcher/launchrecords.hpp>
#include <gpuruntime/launcher/stepwalk.hpp>

#include <type_traits>

namespace gpuruntime::elementwise {

/// Base of the functors whose first argument is the output, an array with one element for each thread in bounds, and
/// which write each thread's own element, and nothing else of it, without reading it. In one dimension that is
/// `out[it.index]`; in a box, `out[it.y * it.sizeX + it.x]` and `out[(it.z * it.sizeY + it.y) * it.sizeX + it.x]`.
struct WritesOwnElement {};

/// Base of the functors of the flat launcher that look for something: `finds(it, args...)` is their test of an element,
/// bound test included, and `report(args...)` runs where it holds, once or more often. One that also derives from
/// WritesOwnElement writes first.
struct FindsInElement {};

/// Base of the functors that list some of the elements, in the order of memory: `lists(it, args...)` tells whether an
/// element is listed, bound test included, `slot(it, args...)` at which place, and `write(it, slot, args...)` writes it
/// there. From element to listed element of a run the slots rise by one, so a backend may ask for one a run.
struct ListsElements {};

/// Base of the functors that can also do what a block covers as a whole, where platform::prefersWholeBlocks is true:
/// `applyToBlock(block, first, live, args...)`, with the first element and the number of them along each dimension,
/// then stands in for `apply`. In a box, `joinedBlocks` neighbours are one block.
struct RunsWholeBlocks {
  static constexpr unsigned int joinedBlocks = 1;
};

/// Base of the functors that look up where they read or write: `placeOf(it, args...)` is that place, of which nothing
/// is written in the launch, and `applyAt(place, it, args...)` does what else `apply(it, args...)` would.
struct LooksUpPlace {};

}  // namespace gpuruntime::elementwise

namespace gpuruntime::launchdetail {

template <class Functor>
inline constexpr bool runsWholeBlocks =
    platform::prefersWholeBlocks&& std::is_base_of_v<elementwise::RunsWholeBlocks, Functor>;

/// A functor that takes the threads of a block in a way of its own.
template <class Functor>
inline constexpr bool takesThreadsItsWay =
    std::is_base_of_v<elementwise::LooksUpPlace, Functor> || std::is_base_of_v<elementwise::ListsElements, Functor>;

/// Runs a functor for the live threads of a block, of which `iteratorOf(thread)` says where they stand.
template <class Functor, class IteratorOf, class... Args>
GPURUNTIME_DEVICE void applyToThreads(const platform::Block<>& block, platform::Live live, IteratorOf iteratorOf,
                                      Args... args) {
  if constexpr (std::is_base_of_v<elementwise::LooksUpPlace, Functor>) {
    block.forEachPlace(
        live, [=](platform::Thread thread) { return Functor::placeOf(iteratorOf(thread), args...); },
        [=](platform::Thread thread, unsigned long place) { Functor::applyAt(place, iteratorOf(thread), args...); });
  } else if constexpr (std::is_base_of_v<elementwise::ListsElements, Functor>) {
    block.forEachListed(
        live, [=](platform::Thread thread) { return Functor::lists(iteratorOf(thread), args...); },
        [=](platform::Thread thread) { return Functor::slot(iteratorOf(thread), args...); },
        [=](platform::Thread thread, unsigned long slot) { Functor::write(iteratorOf(thread), slot, args...); });
  } else {
    block.forEachThreadOfBox(live, [=](platform::Thread thread) { Functor::apply(iteratorOf(thread), args...); });
  }
}

template <class Functor, class Out, class... Args>
constexpr unsigned int joinedBlocksFor() {
  if constexpr (runsWholeBlocks<Functor>) {
    return Functor::joinedBlocks;
  } else if constexpr (std::is_base_of_v<elementwise::WritesOwnElement, Functor>) {
    return platform::joinedRuns<std::remove_pointer_t<Out>>;
  } else {
    return 1;
  }
}

/// How many neighbouring blocks of a box a backend may run as one; see platform.hpp.
template <class Functor, class... Args>
inline constexpr unsigned int joinedBlocks = joinedBlocksFor<Functor, Args...>();

template <class Functor, class = void>
inline constexpr unsigned int walkSide = 1;
template <class Functor>
inline constexpr unsigned int walkSide<Functor, std::void_t<decltype(Functor::walkSide)>> = Functor::walkSide;

template <class Run, class T, class... Args>
GPURUNTIME_DEVICE void runInWindow(const platform::Block<>& block, Distances first, Distances live, Distances size,
                                   Run run, T* out, Args... args) {
  // Rows and pages follow one another in memory if they are whole.
  const bool isOneRun = (live.y <= 1 || live.x == size.x) && (live.z <= 1 || live.x * live.y == size.x * size.y);
  constexpr unsigned int most = preferredBlockSize * platform::joinedRuns<T>;
  platform::OutputWindow<T, most> window(out, (first.z * size.y + first.y) * size.x + first.x, live.x * live.y * live.z,
                                         isOneRun ? size.x * size.y * size.z : 0);
  run(window.pointer(), args...);
  window.flush(block);
}

/// Runs a functor on the part of a box that a block covers in one step: the elements from `first` on, and before `end`,
/// of a box of `size`. `iteratorOf(thread)` says where a thread stands.
template <class Functor, class IteratorOf, class... Args>
GPURUNTIME_DEVICE void applyInBox(const platform::Block<>& block, Distances first, Distances end, Distances size,
                                  IteratorOf iteratorOf, Args... args) {
  const platform::Live live{platform::Live::after(first.x, end.x), platform::Live::after(first.y, end.y),
                            platform::Live::after(first.z, end.z)};
  const auto run = [=](auto... arguments) { applyToThreads<Functor>(block, live, iteratorOf, arguments...); };
  const platform::Extent shape = block.shape();
  using gpucommon::hostDeviceMath::minSizeT;
  [[maybe_unused]] const Distances covered{minSizeT<unsigned long>(live.x, shape.x),
                                           minSizeT<unsigned long>(live.y, shape.y),
                                           minSizeT<unsigned long>(live.z, shape.z)};
  if constexpr (runsWholeBlocks<Functor>) {
    Functor::applyToBlock(block, first, covered, args...);
  } else if constexpr (std::is_base_of_v<elementwise::WritesOwnElement, Functor>) {
    runInWindow(block, first, covered, size, run, args...);
  } else {
    run(args...);
  }
}

}  // namespace gpuruntime::launchdetail
