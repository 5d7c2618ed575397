// SPDX-License-Identifier: MIT
// The table of equipment; readings turned into the entries of a log.
#include "workout/recording.h"

#include <algorithm>
#include <cmath>

namespace ipodctl {

namespace {

constexpr const char* kEventNames[] = {"start", "continue", "pause", "resume", "end"};
constexpr const char* kUnitNames[] = {"km", "floors"};
constexpr const char* kSpeedNames[] = {"pace", "spm", "rpm"};

// Means over time: each reading counts until the next one.
class Means {
 public:
  void Add(const Reading& reading, int seconds) {
    if (!reading.paused) {
      moving_s_ += seconds;
      speed_ += reading.speed * seconds;
    }
    if (reading.bpm == 0) return;
    heart_s_ += seconds;
    bpm_ += static_cast<double>(reading.bpm) * seconds;
  }

  double moving_s() const { return moving_s_; }
  double speed() const { return moving_s_ == 0 ? 0 : speed_ / moving_s_; }
  int bpm() const { return heart_s_ == 0 ? 0 : static_cast<int>(std::lround(bpm_ / heart_s_)); }

 private:
  double moving_s_ = 0;
  double speed_ = 0;
  double heart_s_ = 0;
  double bpm_ = 0;
};

}  // namespace

const std::vector<Equipment>& AllEquipment() {
  // In the order of their numbers.
  static const std::vector<Equipment> equipment = {
      {"treadmill", IPOD_EQUIPMENT_TYPE_TREADMILL, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_PACE},
      {"elliptical", IPOD_EQUIPMENT_TYPE_ELLIPTICAL, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_SPM},
      {"stepper", IPOD_EQUIPMENT_TYPE_STEPPER, IPOD_DISTANCE_TYPE_FLOORS, IPOD_SPEED_TYPE_SPM},
      {"bike", IPOD_EQUIPMENT_TYPE_BIKE, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_RPM},
      {"other", IPOD_EQUIPMENT_TYPE_OTHER, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_PACE},
  };
  return equipment;
}

std::optional<Equipment> EquipmentByName(const std::string& name) {
  for (const Equipment& equipment : AllEquipment()) {
    if (name == equipment.name) return equipment;
  }
  return std::nullopt;
}

const Equipment& EquipmentByType(tagIPOD_EQUIPMENT_TYPE type) {
  return AllEquipment()[static_cast<std::size_t>(type)];
}

std::vector<Interval> IntervalsOf(const Recording& recording, int every_s) {
  const std::vector<Reading>& readings = recording.readings;
  std::vector<Interval> intervals = {{IPOD_INTERVAL_TYPE_START, readings.front()}};
  bool paused = readings.front().paused;
  for (std::size_t i = 1; i + 1 < readings.size(); ++i) {
    const Reading& reading = readings[i];
    const int since_last_s = reading.seconds - intervals.back().reading.seconds;
    if (reading.paused != paused) {
      paused = reading.paused;
      intervals.push_back({paused ? IPOD_INTERVAL_TYPE_PAUSE : IPOD_INTERVAL_TYPE_RESUME, reading});
    } else if (!paused && since_last_s >= every_s) {
      intervals.push_back({IPOD_INTERVAL_TYPE_CONTINUE, reading});
    }
  }
  intervals.push_back({IPOD_INTERVAL_TYPE_END, readings.back()});
  return intervals;
}

const Reading& ReadingAt(const Recording& recording, double seconds) {
  const auto later = std::upper_bound(
      recording.readings.begin(), recording.readings.end(), seconds,
      [](double moment, const Reading& reading) { return moment < reading.seconds; });
  return later == recording.readings.begin() ? *later : *(later - 1);
}

// The document's summary has a pace beside kilometres and steps per minute beside floors, whatever
// the equipment counts, so this is what its speed has to be.
Summary SummaryAt(const Recording& recording, int seconds) {
  Means means;
  const std::vector<Reading>& readings = recording.readings;
  for (std::size_t i = 0; i < readings.size() && readings[i].seconds < seconds; ++i) {
    const int until = i + 1 < readings.size() ? readings[i + 1].seconds : seconds;
    means.Add(readings[i], std::min(until, seconds) - readings[i].seconds);
  }
  const Reading& last = ReadingAt(recording, seconds);
  Summary summary = {seconds, last.kcal, last.distance, means.speed(), means.bpm()};
  if (recording.distance_type == IPOD_DISTANCE_TYPE_KM) {
    summary.speed = last.distance > 0 ? means.moving_s() / last.distance : 0;
  }
  return summary;
}

const char* EventName(tagIPOD_INTERVAL_TYPE event) { return kEventNames[event]; }

const char* UnitName(tagIPOD_DISTANCE_TYPE type) { return kUnitNames[type]; }

const char* SpeedName(tagIPOD_SPEED_TYPE type) { return kSpeedNames[type]; }

}  // namespace ipodctl
