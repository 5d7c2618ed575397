// SPDX-License-Identifier: MIT
// What a workout document amounts to: its totals, pauses and courses over time.
#pragma once

#include <optional>
#include <vector>

#include "report/workout_document.h"

namespace ipodctl {

enum class SpeedKind { kNone, kPace, kSpm, kRpm };
enum class DistanceKind { kNone, kKm, kFloors };

/// A total or an average.
struct Figure {
  std::optional<double> value;
  /// Whether it was computed from the intervals because the document does not state it.
  bool computed = false;
};

struct Pause {
  double from = 0;  // seconds
  double to = 0;
};

struct Sample {
  double seconds = 0;
  double value = 0;
  /// Whether readings are missing before this one, so that no line leads here.
  bool starts_anew = false;
};

struct WorkoutFigures {
  Figure seconds;
  Figure kcal;
  Figure km;
  Figure floors;
  Figure pace;  // averages, as the one below
  Figure spm;
  Figure rpm;
  Figure bpm;
  std::optional<double> highest_bpm;
  double paused_seconds = 0;
};

WorkoutFigures FiguresOf(const WorkoutDocument& document);

/// Of a pace in seconds per kilometre, more than 0; a million at most.
double KilometresPerHour(double pace);

/// From each pause to what ends it (a resume, the end, or the last interval), in the order of time.
std::vector<Pause> PausesOf(const WorkoutDocument& document);

/// How a course gets from a pause to the resume that follows it without a reading between.
enum class AcrossPauses {
  kBreaks,  // the heart rate in between is unknown
  kGoesOn,  // a distance stays what it was
};

/// The reading in the order of time, from the intervals that have a time. Nothing is measured in a
/// pause, so that a 0 there is none, but for courses that go on.
std::vector<Sample> CourseOf(const WorkoutDocument& document,
                             std::optional<double> Readings::*reading, AcrossPauses across);

/// What most of the intervals measure. The summary may have another kind of speed: its
/// element goes by the kind of distance.
SpeedKind SpeedKindOf(const WorkoutDocument& document);
/// Whether one rides, and thinks of the speed in distance for a time, not in time for a distance.
bool IsRide(const WorkoutDocument& document);
DistanceKind DistanceKindOf(const WorkoutDocument& document);

/// The latest time of any interval, in seconds.
double LastSecond(const WorkoutDocument& document);

}  // namespace ipodctl
