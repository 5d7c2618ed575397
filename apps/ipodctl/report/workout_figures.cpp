// SPDX-License-Identifier: MIT
// Adds up a workout's intervals.
#include "report/workout_figures.h"

#include <algorithm>
#include <cstddef>

namespace ipodctl {

namespace {

using Reading = std::optional<double> Readings::*;

std::ptrdiff_t Count(const WorkoutDocument& document, Reading reading) {
  return std::count_if(
      document.intervals.begin(), document.intervals.end(),
      [reading](const Interval& interval) { return (interval.readings.*reading).has_value(); });
}

bool Summarised(const WorkoutDocument& document, Reading reading) {
  return document.summary && (*document.summary.*reading).has_value();
}

/// Times and distances run on from the start, so that the largest is the total.
std::optional<double> Largest(const WorkoutDocument& document, Reading reading) {
  std::optional<double> largest;
  for (const Interval& interval : document.intervals) {
    const std::optional<double>& value = interval.readings.*reading;
    if (value && (!largest || *value > *largest)) largest = value;
  }
  return largest;
}

std::optional<double> Mean(const WorkoutDocument& document, Reading reading) {
  double sum = 0;
  double count = 0;
  for (const Interval& interval : document.intervals) {
    const std::optional<double>& value = interval.readings.*reading;
    if (!value) continue;
    sum += *value;
    ++count;
  }
  return count == 0 ? std::nullopt : std::optional<double>(sum / count);
}

Figure StatedOr(const WorkoutDocument& document, Reading reading,
                const std::optional<double>& computed) {
  if (Summarised(document, reading)) return {*document.summary.*reading, false};
  return {computed, computed.has_value()};
}

Reading ReadingOf(SpeedKind kind) {
  if (kind == SpeedKind::kSpm) return &Readings::spm;
  return kind == SpeedKind::kRpm ? &Readings::rpm : &Readings::pace;
}

std::optional<double> AverageSpeed(const WorkoutDocument& document, const WorkoutFigures& figures) {
  if (figures.speed_kind == SpeedKind::kNone) return std::nullopt;
  const bool moved = figures.km.value && *figures.km.value > 0 && figures.seconds.value;
  if (figures.speed_kind != SpeedKind::kPace || !moved) {
    return Mean(document, ReadingOf(figures.speed_kind));
  }
  const double moving = *figures.seconds.value - figures.paused_seconds;
  return moving > 0 ? std::optional<double>(moving / *figures.km.value) : std::nullopt;
}

// The summary names its speed by the kind of distance, whatever the console measures: a bike's
// revolutions stand there as <pace>. So the intervals decide what the number is.
Figure Speed(const WorkoutDocument& document, const WorkoutFigures& figures) {
  for (const Reading reading : {&Readings::pace, &Readings::spm, &Readings::rpm}) {
    if (Summarised(document, reading)) return {*document.summary.*reading, false};
  }
  const std::optional<double> average = AverageSpeed(document, figures);
  return {average, average.has_value()};
}

}  // namespace

SpeedKind SpeedKindOf(const WorkoutDocument& document) {
  const std::pair<SpeedKind, Reading> kinds[] = {{SpeedKind::kPace, &Readings::pace},
                                                 {SpeedKind::kSpm, &Readings::spm},
                                                 {SpeedKind::kRpm, &Readings::rpm}};
  SpeedKind found = SpeedKind::kNone;
  std::ptrdiff_t most = 0;
  for (const auto& [kind, reading] : kinds) {
    const std::ptrdiff_t count = Count(document, reading);
    if (count > most) {
      most = count;
      found = kind;
    }
  }
  for (const auto& [kind, reading] : kinds) {
    if (found == SpeedKind::kNone && Summarised(document, reading)) found = kind;
  }
  return found;
}

DistanceKind DistanceKindOf(const WorkoutDocument& document) {
  const std::ptrdiff_t km = Count(document, &Readings::km);
  const std::ptrdiff_t floors = Count(document, &Readings::floors);
  if (km == 0 && floors == 0) {
    if (Summarised(document, &Readings::km)) return DistanceKind::kKm;
    return Summarised(document, &Readings::floors) ? DistanceKind::kFloors : DistanceKind::kNone;
  }
  return km >= floors ? DistanceKind::kKm : DistanceKind::kFloors;
}

std::vector<Pause> PausesOf(const WorkoutDocument& document) {
  std::vector<Pause> pauses;
  bool paused = false;
  for (const Interval& interval : document.intervals) {
    if (!interval.readings.seconds) continue;
    const double now = *interval.readings.seconds;
    if (paused) pauses.back().to = std::max(pauses.back().to, now);
    if (interval.event == WorkoutEvent::kPause && !paused) {
      pauses.push_back({now, now});
      paused = true;
    }
    if (interval.event == WorkoutEvent::kResume || interval.event == WorkoutEvent::kEnd) {
      paused = false;
    }
  }
  return pauses;
}

std::vector<Sample> CourseOf(const WorkoutDocument& document, Reading reading) {
  std::vector<Sample> course;
  bool missing = true;
  for (const Interval& interval : document.intervals) {
    const std::optional<double>& seconds = interval.readings.seconds;
    const std::optional<double>& value = interval.readings.*reading;
    if (!seconds) continue;
    if (value) course.push_back({*seconds, *value, missing});
    missing = !value;
  }
  std::stable_sort(course.begin(), course.end(), [](const Sample& left, const Sample& right) {
    return left.seconds < right.seconds;
  });
  return course;
}

double LastSecond(const WorkoutDocument& document) {
  return Largest(document, &Readings::seconds).value_or(0);
}

WorkoutFigures FiguresOf(const WorkoutDocument& document) {
  WorkoutFigures figures;
  const auto total = [&document](Reading reading) {
    return StatedOr(document, reading, Largest(document, reading));
  };
  figures.seconds = total(&Readings::seconds);
  figures.kcal = total(&Readings::kcal);
  figures.km = total(&Readings::km);
  figures.floors = total(&Readings::floors);
  for (const Pause& pause : PausesOf(document)) figures.paused_seconds += pause.to - pause.from;
  figures.speed_kind = SpeedKindOf(document);
  figures.speed = Speed(document, figures);
  figures.bpm = StatedOr(document, &Readings::bpm, Mean(document, &Readings::bpm));
  figures.highest_bpm = Largest(document, &Readings::bpm);
  return figures;
}

}  // namespace ipodctl
