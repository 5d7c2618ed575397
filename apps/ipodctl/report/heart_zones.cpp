// SPDX-License-Identifier: MIT
// Adds up the time between readings.
#include "report/heart_zones.h"

#include <cmath>

namespace ipodctl {

std::array<HeartZone, kHeartZones> TimeInZones(const WorkoutDocument& document,
                                               double max_heart_rate) {
  std::array<HeartZone, kHeartZones> zones;
  for (std::size_t i = 1; i < kHeartZones; ++i) {
    const double tenths = 4 + static_cast<double>(i);
    zones[i].from = std::ceil(max_heart_rate * tenths / 10);
    zones[i - 1].to = zones[i].from - 1;
  }
  zones.back().to = max_heart_rate;
  const std::vector<Sample> course = CourseOf(document, &Readings::bpm, AcrossPauses::kBreaks);
  for (std::size_t i = 0; i + 1 < course.size(); ++i) {
    if (course[i + 1].starts_anew) continue;
    std::size_t zone = kHeartZones - 1;
    while (zone > 0 && course[i].value < zones[zone].from) --zone;
    zones[zone].seconds += course[i + 1].seconds - course[i].seconds;
  }
  return zones;
}

}  // namespace ipodctl
