/// @file
/// Forces every member of a family into the library.
#pragma once

#include <gpuruntime/elementtypes.hpp>

#define GPURUNTIME_INSTANTIATE_INVOKER(Family, T) template struct Family::Invoker<T>;

/// Stands at the end of a family's unit: instantiates `Family::Invoker<T>` for every member of GPURUNTIME_##LIST.
#define GPURUNTIME_INSTANTIATE(Family, LIST) \
  GPURUNTIME_##LIST(GPURUNTIME_INSTANTIATE_INVOKER, Family) static_assert(true, "a semicolon follows")

// A list can't be walked inside its own walk, so the inner walk is spelled out only when the outer one is over.
#define GPURUNTIME_NOTHING()
#define GPURUNTIME_NAME_OF_LIST(LIST) GPURUNTIME_##LIST
#define GPURUNTIME_SCANNED_AGAIN(...) __VA_ARGS__
#define GPURUNTIME_UNPACKED(...) __VA_ARGS__

#define GPURUNTIME_INSTANTIATE_PAIR(Family, T, U) template struct Family::Invoker<T, U>;
#define GPURUNTIME_INSTANTIATE_PAIR_OF(...) GPURUNTIME_INSTANTIATE_PAIR(__VA_ARGS__)
#define GPURUNTIME_WITH_SECOND(FamilyAndFirst, U) GPURUNTIME_INSTANTIATE_PAIR_OF(GPURUNTIME_UNPACKED FamilyAndFirst, U)
#define GPURUNTIME_WALK_SECOND(Family, LIST, T) \
  GPURUNTIME_NAME_OF_LIST GPURUNTIME_NOTHING()(LIST)(GPURUNTIME_WITH_SECOND, (Family, T))
#define GPURUNTIME_WALK_SECOND_OF(...) GPURUNTIME_WALK_SECOND(__VA_ARGS__)
#define GPURUNTIME_WITH_FIRST(FamilyAndList, T) GPURUNTIME_WALK_SECOND_OF(GPURUNTIME_UNPACKED FamilyAndList, T)

/// The same for families of two types: `Family::Invoker<T, U>`, T of GPURUNTIME_##FIRST and U of GPURUNTIME_##SECOND.
#define GPURUNTIME_INSTANTIATE_PAIRS(Family, FIRST, SECOND)                             \
  GPURUNTIME_SCANNED_AGAIN(GPURUNTIME_##FIRST(GPURUNTIME_WITH_FIRST, (Family, SECOND))) \
  static_assert(true, "a semicolon follows")
