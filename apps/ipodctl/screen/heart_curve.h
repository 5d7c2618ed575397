// SPDX-License-Identifier: MIT
// The heart rate of a workout as a curve in characters.
#pragma once

#include <string>
#include <vector>

#include "workout/recording.h"

namespace ipodctl::screen {

struct HeartCurve {
  int lowest_bpm = 0;   // that the lower edge stands for
  int highest_bpm = 0;  // that the upper edge stands for
  std::vector<std::string> lines;
};

/// Draws what was measured by `seconds`, on a width that stands for the whole workout.
/// @return no lines when there is no heart rate in the recording
HeartCurve DrawHeartCurve(const Recording& recording, int seconds, int rows, int columns);

}  // namespace ipodctl::screen
