// SPDX-License-Identifier: MIT
// A workout that nobody did: plausible readings, one a second, always the same ones.
#pragma once

#include "workout/equipment.h"
#include "workout/recording.h"

namespace ipodctl {

/// Warms up, works, and cools down. A workout of a minute or more pauses once.
/// @param seconds at least 1
/// @param weight_kg of who works out; energy goes up with it
Recording GenerateWorkout(const Equipment& equipment, int seconds, double weight_kg);

}  // namespace ipodctl
