/// @file
/// What the tests of recipes share: memory that is exactly enough, too little, or not there at all.
#pragma once

#include <gpuruntime/recipes/recipes.hpp>

#include "support/familytest.hpp"

#include <tuple>

namespace testsupport {

using gpuruntime::recipes::Extents;
using gpuruntime::recipes::View;

/// A device that has no memory left.
class EmptyAllocator : public gpuruntime::recipes::Allocator {
 public:
  void* allocate(std::size_t) override { throw std::bad_alloc(); }
  void release(void*, std::size_t) noexcept override { ADD_FAILURE() << "memory given back that was never taken"; }
};

/// An array of small whole numbers, of which sums and products of a few are exact in every type.
template <class T>
HostArray<T> wholeNumbers(unsigned long n, unsigned int seed, int from = -9, int to = 9) {
  using R = gpuruntime::RealOf<T>;
  HostArray<T> array(n);
  auto* const parts = reinterpret_cast<R*>(array.data());
  std::minstd_rand next(seed);
  for (unsigned long i = 0; i < n * sizeof(T) / sizeof(R); ++i) {
    parts[i] = static_cast<R>(from + static_cast<int>((next() >> 8) % static_cast<unsigned>(to - from + 1)));
  }
  return array;
}

template <class T>
View<T> viewOf(GuardedArray<T>& array, Extents extents) {
  return View<T>(array.data(), std::move(extents));
}

/// A bool array as one of `call`'s outputs must not change where it throws.
template <class Exception, class Call, class... Arrays>
void expectRefused(const std::string& text, const Call& call, const Arrays&... arrays) {
  const auto before = std::make_tuple(arrays.toHost()...);
  try {
    call();
    ADD_FAILURE() << "nothing was refused; expected: " << text;
  } catch (const Exception& error) {
    EXPECT_NE(std::string(error.what()).find(text), std::string::npos) << error.what() << "\nexpected: " << text;
  }
  const auto after = std::make_tuple(arrays.toHost()...);
  const auto same = [](const auto& a, const auto& b) {
    return a.size() == 0 || std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])) == 0;
  };
  std::apply(
      [&](const auto&... olds) {
        std::apply([&](const auto&... news) { EXPECT_TRUE((same(olds, news) && ...)) << "written all the same"; },
                   after);
      },
      before);
}

/// Runs `call(allocator)` without memory and with a byte less than `bytes`: it must throw and leave the arrays alone.
/// Then with a workspace of just that size, of which nothing may be left in use.
template <class Call, class... Arrays>
void expectMemory(std::size_t bytes, const Call& call, const Arrays&... arrays) {
  EmptyAllocator nothing;
  if (bytes == 0) return call(nothing);
  GuardedArray<unsigned char> memory(bytes);
  expectRefused<std::bad_alloc>(
      "", [&] { call(nothing); }, arrays...);
  gpuruntime::recipes::Workspace small(memory.data(), bytes - 1);
  expectRefused<gpuruntime::recipes::WorkspaceTooSmall>(
      "workspace too small", [&] { call(small); }, arrays...);
  EXPECT_EQ(small.used(), 0u);
  gpuruntime::recipes::Workspace workspace(memory.data(), bytes);
  call(workspace);
  EXPECT_EQ(workspace.used(), 0u);
  EXPECT_EQ(workspace.most(), bytes);
  memory.toHost();  // Fails the test where a guard was written.
}

}  // namespace testsupport
