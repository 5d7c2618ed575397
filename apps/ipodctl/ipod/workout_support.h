// SPDX-License-Identifier: MIT
// Whether the iPod in the dock takes workouts.
#pragma once

#include "ipodcomm/ipod.h"

namespace ipodctl {

/// The legacy interface announces the workout lingoes to some models only, told by the beginning of
/// their number; the others are not asked.
bool TakesWorkouts(ipod& docked);

}  // namespace ipodctl
