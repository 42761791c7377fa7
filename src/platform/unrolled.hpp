/// @file
/// Loops spelled out.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace gpuruntime::platform {
namespace detail {

template <class Body, std::size_t... I>
GPURUNTIME_INLINE constexpr void forIndices(Body&& body, std::index_sequence<I...>) {
  (body(std::integral_constant<unsigned int, I>()), ...);
}

}  // namespace detail

/// body(0) to body(N - 1), one behind the other, with indices that are constants: a loop inside a step over threads
/// that must not keep it from being vectorised, and over arrays that are to stay in registers.
template <unsigned int N, class Body>
GPURUNTIME_INLINE constexpr void unrolled(Body&& body) {
  detail::forIndices(body, std::make_index_sequence<N>());
}

}  // namespace gpuruntime::platform
