// SPDX-License-Identifier: MIT
// Makes up the readings of a workout.
#include <algorithm>
#include <cmath>

#include "workout/recording.h"

namespace ipodctl {

namespace {

constexpr double kSecondsPerHour = 3600;
constexpr int kShortestWithPauseS = 60;
constexpr double kRestingBpm = 72;
constexpr double kHeartFollowsS = 25;  // time constant of the heart rate
constexpr double kWaveS = 97;          // period of small changes of speed

// What full effort means on one kind of equipment.
struct Effort {
  double distance_per_hour;  // kilometres or floors
  double per_minute;         // steps or revolutions; unused where the speed is a pace
  double met;                // energy per hour and kilogram of weight
  double incline;
  int level;
  double bpm;
};

Effort FullEffort(tagIPOD_EQUIPMENT_TYPE type) {
  switch (type) {
    case IPOD_EQUIPMENT_TYPE_ELLIPTICAL:
      return {8.4, 140, 7.5, 0, 9, 152};
    case IPOD_EQUIPMENT_TYPE_STEPPER:
      return {330, 88, 8.8, 0, 8, 158};
    case IPOD_EQUIPMENT_TYPE_BIKE:
      return {28, 86, 8.0, 0, 7, 146};
    case IPOD_EQUIPMENT_TYPE_OTHER:
      return {7.2, 0, 6.0, 0, -1, 140};
    case IPOD_EQUIPMENT_TYPE_TREADMILL:
    default:
      return {10.8, 0, 9.8, 2.5, -1, 160};
  }
}

struct Pause {
  int start_s;
  int end_s;
};

// Two fifths into the workout, for a twentieth of it, but not for more than a minute.
Pause PauseOf(int seconds) {
  if (seconds < kShortestWithPauseS) return {seconds, seconds};
  const int start_s = seconds * 2 / 5;
  return {start_s, start_s + std::clamp(seconds / 20, 10, 60)};
}

// Between 0 and 1: up in the first fifth, down in the last tenth, small waves in between.
double EffortAt(int second, int seconds) {
  const double way = static_cast<double>(second) / seconds;
  const double ramp = std::min({1.0, 0.55 + way * 2.25, 0.6 + (1 - way) * 4});
  return ramp * (0.96 + 0.04 * std::sin(second / kWaveS * 6.283));
}

double OneDecimal(double value) { return std::round(value * 10) / 10; }

}  // namespace

Recording GenerateRecording(const Equipment& equipment, int seconds, double weight_kg) {
  const Effort full = FullEffort(equipment.type);
  const Pause pause = PauseOf(seconds);
  Recording recording = {equipment.type, equipment.distance_type, equipment.speed_type, {}};
  recording.readings.reserve(static_cast<std::size_t>(seconds) + 1);
  Reading reading;
  double bpm = kRestingBpm + 12;
  for (int second = 0; second <= seconds; ++second) {
    const bool paused = second >= pause.start_s && second < pause.end_s;
    const double effort = paused ? 0 : EffortAt(second, seconds);
    const double per_hour = full.distance_per_hour * effort;
    if (second != 0) {
      reading.distance += per_hour / kSecondsPerHour;
      reading.kcal += full.met * weight_kg * effort / kSecondsPerHour;
      bpm += (kRestingBpm + (full.bpm - kRestingBpm) * effort - bpm) / kHeartFollowsS;
    }
    const double pace = paused ? 0 : kSecondsPerHour / per_hour;
    reading.seconds = second;
    reading.speed =
        equipment.speed_type == IPOD_SPEED_TYPE_PACE ? pace : std::round(full.per_minute * effort);
    reading.incline = OneDecimal(full.incline * effort);
    reading.bpm = static_cast<int>(std::lround(bpm));
    reading.level = full.level;
    reading.paused = paused;
    recording.readings.push_back(reading);
  }
  return recording;
}

}  // namespace ipodctl
