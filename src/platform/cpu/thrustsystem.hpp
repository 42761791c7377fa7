/// @file
/// Thrust shares its work out by oneTBB.
#pragma once

#define THRUST_DEVICE_SYSTEM THRUST_DEVICE_SYSTEM_TBB
