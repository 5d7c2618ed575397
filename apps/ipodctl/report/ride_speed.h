// SPDX-License-Identifier: MIT
// The speed of a ride over time.
#pragma once

#include <vector>

#include "report/workout_figures.h"

namespace ipodctl {

struct RideSpeed {
  std::vector<Sample> course;  // kilometres per hour, with gaps at the pauses
  bool from_distance = false;  // computed, since the intervals hold no pace
};

RideSpeed RideSpeedOf(const WorkoutDocument& document);

}  // namespace ipodctl
