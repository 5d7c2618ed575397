// SPDX-License-Identifier: MIT
// What a workout document says.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ipodctl {

enum class WorkoutEvent { kNone, kStart, kContinue, kPause, kResume, kEnd };

/// What a console measured. What it did not write, or wrote as no usable number, is left out.
struct Readings {
  std::optional<double> seconds;  // since the start
  std::optional<double> kcal;
  std::optional<double> km;
  std::optional<double> floors;
  std::optional<double> pace;  // seconds per kilometre
  std::optional<double> spm;   // steps per minute
  std::optional<double> rpm;   // revolutions per minute
  std::optional<double> incline;
  std::optional<double> bpm;  // heart beats per minute
  std::optional<double> level;
};

struct DocumentInterval {
  WorkoutEvent event = WorkoutEvent::kNone;
  Readings readings;
};

/// Empty texts were not in the document. The older form has the gym, the present one the
/// manufacturer's name.
struct EquipmentInfo {
  std::string manufacturer_id;
  std::string manufacturer_name;
  std::string type;
  std::string model;
  std::string serial_number;
  std::string gym_name;
  std::string gym_location;
};

/// Of the iPod that keeps the document; it adds this itself when the document is closed.
struct IpodInfo {
  std::string model;
  std::string software_version;
  std::string serial_number;
};

/// Where reading a document ended early, and why.
struct DocumentProblem {
  bool cut_short = false;    // it only lacks its end
  unsigned long line = 0;    // counted from 1
  unsigned long column = 0;  // counted from 1, in characters
  std::string what;          // the rest of "is malformed: ..."; empty when cut short
};

struct WorkoutDocument {
  /// Whether the outermost element is the one of workout documents.
  bool is_workout = false;
  EquipmentInfo equipment;
  IpodInfo ipod;
  std::optional<double> weight_kg;
  std::vector<DocumentInterval> intervals;
  std::optional<Readings> summary;
  /// Set when the document could not be read to its end; all else is what comes before that place.
  std::optional<DocumentProblem> problem;
  /// Values left out because they were no usable numbers ("nan", "inf", negative distances).
  unsigned long unusable_values = 0;
};

}  // namespace ipodctl
