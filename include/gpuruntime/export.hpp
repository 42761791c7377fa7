/// @file
/// Visibility of the library's interface. Everything else is hidden.
#pragma once

#define GPURUNTIME_API __attribute__((visibility("default")))
