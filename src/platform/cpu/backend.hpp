/// @file
/// The cpu backend: blocks run on all cores, the threads of a block as SIMD loops. The contract is in platform.hpp.
#pragma once

#include "arithmetic.hpp"
#include "atomics.hpp"
#include "block.hpp"
#include "kernel.hpp"
#include "outputwindow.hpp"
#include "pack.hpp"
#include "pairtrees.hpp"
#include "qualifiers.hpp"
#include "run.hpp"
#include "runtime.hpp"
#include "tile.hpp"
#include "transcendental.hpp"
