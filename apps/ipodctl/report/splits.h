// SPDX-License-Identifier: MIT
// How long each kilometre or mile of a workout took.
#pragma once

#include <optional>
#include <vector>

#include "report/measures.h"
#include "report/workout_figures.h"

namespace ipodctl {

struct Split {
  double from = 0;  // kilometres or miles
  double to = 0;
  double seconds = 0;         // without pauses
  std::optional<double> bpm;  // the mean of what was measured on the way
};

/// Each kilometre or mile, and what was left of one at the end; of very long workouts each 2, 5, 10
/// and so on. None where not even the first was done.
std::vector<Split> SplitsOf(const WorkoutDocument& document, const Measures& measures);

}  // namespace ipodctl
