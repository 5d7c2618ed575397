// SPDX-License-Identifier: MIT
// The text of the workout document. Nothing is sent here.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

/// Characters that a line of the header or a block has room for, terminator included; what does not
/// fit is cut off.
constexpr std::size_t kBlockChars = 512;

struct WorkoutHeader {
  const wchar_t* manufacturer_id;
  const wchar_t* manufacturer_name;
  const wchar_t* model;
  const wchar_t* serial_number;
  tagIPOD_EQUIPMENT_TYPE equipment;  ///< an unknown one has no line
  double weight_kg;
};

struct WorkoutInterval {
  tagIPOD_INTERVAL_TYPE event;  ///< an unknown one has no line
  int seconds;
  double kcal;
  double distance;
  tagIPOD_DISTANCE_TYPE distance_type;
  double speed;
  tagIPOD_SPEED_TYPE speed_type;
  double incline;
  int bpm;    ///< 0 for none
  int level;  ///< -1 for none
};

struct WorkoutSummary {
  int seconds;
  double kcal;
  double distance;
  tagIPOD_DISTANCE_TYPE distance_type;
  double speed;
  int bpm;  ///< 0 for none
};

std::vector<std::wstring> HeaderLines(const WorkoutHeader& header);
std::wstring IntervalBlock(const WorkoutInterval& interval);
std::wstring SummaryBlock(const WorkoutSummary& summary);

}  // namespace ipodcomm
