// SPDX-License-Identifier: MIT
// How long the heart beat how fast, by shares of the highest rate it can.
#pragma once

#include <array>

#include "report/workout_figures.h"

namespace ipodctl {

constexpr std::size_t kHeartZones = 6;  // below all, then five of a tenth each, from a half on

struct HeartZone {
  double from = 0;  // beats per minute, whole; 0 for the one below all
  double to = 0;
  double seconds = 0;
};

/// The time from each reading to the next counts for the zone of the first of them. What lies
/// between two readings that no line joins counts for none.
std::array<HeartZone, kHeartZones> TimeInZones(const WorkoutDocument& document,
                                               double max_heart_rate);

}  // namespace ipodctl
