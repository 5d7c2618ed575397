// SPDX-License-Identifier: MIT
// What the columns of a recorded workout can be, and how their names are written.
#pragma once

#include <optional>
#include <string>

#include "ipodcomm/IpodTypes.h"

namespace ipodctl {

enum class Quantity { kSeconds, kDistance, kEnergy, kSpeed, kIncline, kHeartRate, kLevel, kEvent };

struct CsvColumn {
  const char* name;
  Quantity quantity;
  bool needed;  // a cell may not be empty
  double least;
  double most;
  bool whole;
  std::optional<tagIPOD_DISTANCE_TYPE> distance_type;
  std::optional<tagIPOD_SPEED_TYPE> speed_type;
  const char* names;  // also the other ones; in small letters alone, between bars
  const char* units;  // that may follow a name, the same
};

/// The column of a header's cell, however that is written: "Heart Rate (bpm)", "heart_rate",
/// "HeartRate". Null when it is none; a column in another unit is another one.
const CsvColumn* CsvColumnByName(const std::string& cell);

/// The names of all columns, for a sentence.
extern const char* const kCsvColumnNames;

}  // namespace ipodctl
