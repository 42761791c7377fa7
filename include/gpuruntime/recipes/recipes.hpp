/// @file
/// All recipes: what takes several calls of families, with its arguments checked.
///
/// A thin layer above the library: it calls the exported families and the copies of memory.hpp, and no family knows it.
/// Arguments that do not fit raise a standard exception that says what was expected and what came; nothing is written
/// then. What is not checked stands with each recipe. Element types are named, as in `sum<double>(stream, output,
/// input)`, since arrays become views on the way. Dimensions are counted from 0, positions and indices from 1.
#pragma once

#include <gpuruntime/recipes/convolve.hpp>
#include <gpuruntime/recipes/cumulative.hpp>
#include <gpuruntime/recipes/distinct.hpp>
#include <gpuruntime/recipes/filter.hpp>
#include <gpuruntime/recipes/find.hpp>
#include <gpuruntime/recipes/interpolate.hpp>
#include <gpuruntime/recipes/membership.hpp>
#include <gpuruntime/recipes/reductions.hpp>
#include <gpuruntime/recipes/sort.hpp>
#include <gpuruntime/recipes/subscripts.hpp>
