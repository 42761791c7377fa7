/// @file
/// Everything a caller of the library needs.
#pragma once

#include <gpuruntime/build/colon.hpp>
#include <gpuruntime/build/eye.hpp>
#include <gpuruntime/build/fillarraywithrunningindex.hpp>
#include <gpuruntime/build/genericones.hpp>
#include <gpuruntime/build/linlogspace.hpp>
#include <gpuruntime/build/rand.hpp>
#include <gpuruntime/complex/complexcopypad.hpp>
#include <gpuruntime/complex/complexify.hpp>
#include <gpuruntime/complex/conj.hpp>
#include <gpuruntime/complex/decomplexify.hpp>
#include <gpuruntime/complex/realimag.hpp>
#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/elmath/permute.hpp>
#include <gpuruntime/elmath/rot90.hpp>
#include <gpuruntime/elmath/transpose.hpp>
#include <gpuruntime/platformtypes.hpp>
#include <gpuruntime/randgenerators.hpp>
#include <gpuruntime/util/device.hpp>
#include <gpuruntime/util/messageerror.hpp>
