// SPDX-License-Identifier: MIT
// A workout as the equipment measures it: the kinds of equipment, readings over time, and the
// entries of a log that they make.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ipodcomm/IpodTypes.h"

namespace ipodctl {

/// A kind of equipment, and what it counts.
struct Equipment {
  const char* name;  // on the command line
  tagIPOD_EQUIPMENT_TYPE type;
  tagIPOD_DISTANCE_TYPE distance_type;
  tagIPOD_SPEED_TYPE speed_type;
};

const std::vector<Equipment>& AllEquipment();
/// Nothing when there is no such equipment.
std::optional<Equipment> EquipmentByName(const std::string& name);
const Equipment& EquipmentByType(tagIPOD_EQUIPMENT_TYPE type);

/// What the display of the equipment would show at one moment.
struct Reading {
  int seconds = 0;      // since the start; the clock goes on while the workout is paused
  double kcal = 0;      // since the start
  double distance = 0;  // since the start
  double speed = 0;     // pace in seconds per kilometre, or steps or revolutions per minute
  double incline = 0;   // per cent
  int bpm = 0;          // 0: no heart rate
  int level = -1;       // -1: no level
  bool paused = false;
};

struct Recording {
  tagIPOD_EQUIPMENT_TYPE equipment = IPOD_EQUIPMENT_TYPE_TREADMILL;
  tagIPOD_DISTANCE_TYPE distance_type = IPOD_DISTANCE_TYPE_KM;
  tagIPOD_SPEED_TYPE speed_type = IPOD_SPEED_TYPE_PACE;
  std::vector<Reading> readings;  // at least one; each later than the one before
};

/// An entry of the workout's log.
struct Interval {
  tagIPOD_INTERVAL_TYPE event = IPOD_INTERVAL_TYPE_START;
  Reading reading;
};

/// What the log ends with.
struct Summary {
  int seconds = 0;
  double kcal = 0;
  double distance = 0;
  double speed = 0;  // mean pace in seconds per kilometre, or mean steps per minute for floors
  int bpm = 0;       // mean; 0: no heart rate
};

/// The log of a whole workout: its start, every pause and resumption, its end, and in between an
/// interval whenever a reading comes at least `every_s` seconds after the last one.
std::vector<Interval> IntervalsOf(const Recording& recording, int every_s);

/// The reading that the display shows at `seconds`: the last one by then.
const Reading& ReadingAt(const Recording& recording, double seconds);

/// The summary of the workout up to `seconds`.
Summary SummaryAt(const Recording& recording, int seconds);

const char* EventName(tagIPOD_INTERVAL_TYPE event);
/// "km" or "floors".
const char* UnitName(tagIPOD_DISTANCE_TYPE type);
/// "pace", "spm" or "rpm".
const char* SpeedName(tagIPOD_SPEED_TYPE type);

/// Makes up a workout (generated_recording.cpp): plausible readings, one a second, always the same
/// ones. Warms up, works, and cools down; a workout of a minute or more pauses
/// once.
/// @param seconds at least 1
/// @param weight_kg of the user; energy goes up with it
Recording GenerateRecording(const Equipment& equipment, int seconds, double weight_kg);

}  // namespace ipodctl
