/// @file
/// Thrust launches kernels of its own.
#pragma once

#define THRUST_DEVICE_SYSTEM THRUST_DEVICE_SYSTEM_CUDA
