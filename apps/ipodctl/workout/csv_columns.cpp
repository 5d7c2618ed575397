// SPDX-License-Identifier: MIT
// The table of columns.
#include "workout/csv_columns.h"

#include <algorithm>
#include <string_view>

#include "console/unicode.h"

namespace ipodctl {

namespace {

// Within these bounds an interval fits one write to the iPod.
constexpr int kMostSeconds = 360000;

constexpr CsvColumn kColumns[] = {
    {"seconds",
     Quantity::kSeconds,
     true,
     0,
     kMostSeconds,
     true,
     {},
     {},
     "seconds|second|secs|sec|s|time|elapsed|elapsedtime",
     "s|sec|secs|seconds"},
    {"distance", Quantity::kDistance, true, 0, 99999, false, {}, {}, "distance", ""},
    {"km",
     Quantity::kDistance,
     true,
     0,
     99999,
     false,
     IPOD_DISTANCE_TYPE_KM,
     {},
     "km|kilometres|kilometers|distancekm|distancekilometres|distancekilometers",
     ""},
    {"floors",
     Quantity::kDistance,
     true,
     0,
     99999,
     false,
     IPOD_DISTANCE_TYPE_FLOORS,
     {},
     "floors|distancefloors",
     ""},
    {"energy",
     Quantity::kEnergy,
     true,
     0,
     99999,
     false,
     {},
     {},
     "energy|calories",
     "kcal|kilocalories"},
    {"kcal", Quantity::kEnergy, true, 0, 99999, false, {}, {}, "kcal|kilocalories", ""},
    {"pace",
     Quantity::kSpeed,
     true,
     0,
     99999,
     false,
     {},
     IPOD_SPEED_TYPE_PACE,
     "pace",
     "s/km|sec/km|seconds/km"},
    {"spm",
     Quantity::kSpeed,
     true,
     0,
     99999,
     false,
     {},
     IPOD_SPEED_TYPE_SPM,
     "spm|stepsperminute|steps/min",
     ""},
    {"rpm",
     Quantity::kSpeed,
     true,
     0,
     99999,
     false,
     {},
     IPOD_SPEED_TYPE_RPM,
     "rpm|revolutionsperminute|revolutions/min",
     ""},
    {"incline",
     Quantity::kIncline,
     false,
     -90,
     90,
     false,
     {},
     {},
     "incline|inclination|grade|gradient",
     "%|percent"},
    {"heart rate",
     Quantity::kHeartRate,
     false,
     0,
     300,
     true,
     {},
     {},
     "heartrate|hr|pulse",
     "bpm|beats/min"},
    {"bpm", Quantity::kHeartRate, false, 0, 300, true, {}, {}, "bpm", ""},
    {"level", Quantity::kLevel, false, 0, 999, true, {}, {}, "level|resistance", ""},
    {"event", Quantity::kEvent, false, 0, 0, false, {}, {}, "event", ""},
};

// Small letters, without what separates words.
std::string Key(const std::string& cell) {
  std::string key;
  for (const char letter : CaseFolded(cell)) {
    if (std::string(" _-.()[]\t").find(letter) == std::string::npos) key.push_back(letter);
  }
  return key;
}

bool IsAmong(std::string_view word, std::string_view words) {
  while (!words.empty()) {
    const std::size_t end = std::min(words.find('|'), words.size());
    if (words.substr(0, end) == word) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

// Whether it is a name, or a name and a unit.
bool Matches(std::string_view key, const CsvColumn& column) {
  if (IsAmong(key, column.names)) return true;
  for (std::size_t end = 1; end < key.size(); ++end) {
    if (IsAmong(key.substr(0, end), column.names) && IsAmong(key.substr(end), column.units)) {
      return true;
    }
  }
  return false;
}

}  // namespace

const char* const kCsvColumnNames =
    "seconds, distance, km or floors, energy or kcal, pace, spm or rpm, incline, heart rate or "
    "bpm, "
    "level and event";

const CsvColumn* CsvColumnByName(const std::string& cell) {
  const std::string key = Key(cell);
  if (key.empty() || key.find('|') != std::string::npos) return nullptr;
  for (const CsvColumn& column : kColumns) {
    if (Matches(key, column)) return &column;
  }
  return nullptr;
}

}  // namespace ipodctl
