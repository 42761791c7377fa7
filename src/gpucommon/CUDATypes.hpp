/// @file
/// Element types: storage classes, double-sized integers and the saturating integer cast, for host and device.
#pragma once

#include <gpuruntime/elementtypes.hpp>
