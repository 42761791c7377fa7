/// @file
/// Forces every member of a family into the library.
#pragma once

#include <gpuruntime/elementtypes.hpp>

#define GPURUNTIME_INSTANTIATE_INVOKER(Family, T) template struct Family::Invoker<T>;

/// Stands at the end of a family's unit: instantiates `Family::Invoker<T>` for every member of GPURUNTIME_##LIST.
#define GPURUNTIME_INSTANTIATE(Family, LIST) \
  GPURUNTIME_##LIST(GPURUNTIME_INSTANTIATE_INVOKER, Family) static_assert(true, "a semicolon follows")
