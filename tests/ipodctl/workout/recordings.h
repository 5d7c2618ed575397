// SPDX-License-Identifier: MIT
// Recordings as tests write them, and the log of their intervals as text.
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "workout/csv_recording.h"
#include "workout/recording.h"

namespace ipodctl {

inline Reading At(int seconds, bool paused = false) {
  Reading reading;
  reading.seconds = seconds;
  reading.paused = paused;
  return reading;
}

inline Recording Kilometres(std::vector<Reading> readings) {
  return {IPOD_EQUIPMENT_TYPE_TREADMILL, IPOD_DISTANCE_TYPE_KM, IPOD_SPEED_TYPE_PACE,
          std::move(readings)};
}

/// The recording that a file "ride.csv" of this text holds.
/// @param[out] unknown_columns those that were ignored
inline Recording Csv(const std::string& text, const char* equipment = "treadmill",
                     std::vector<std::string>* unknown_columns = nullptr) {
  std::istringstream stream(text);
  std::vector<std::string> dropped;
  return ReadCsvRecording(stream, "ride.csv", *EquipmentByName(equipment),
                          unknown_columns != nullptr ? unknown_columns : &dropped);
}

/// "0 start", "10 continue" ...
inline std::vector<std::string> Log(const std::vector<Interval>& intervals) {
  std::vector<std::string> log;
  for (const Interval& interval : intervals) {
    log.push_back(std::to_string(interval.reading.seconds) + " " + EventName(interval.event));
  }
  return log;
}

}  // namespace ipodctl
