// SPDX-License-Identifier: MIT
// Adds up a workout's intervals.
#include "report/workout_figures.h"

#include <algorithm>
#include <cstddef>

namespace ipodctl {

namespace {

using Reading = std::optional<double> Readings::*;

std::ptrdiff_t Count(const WorkoutDocument& document, Reading reading) {
  return std::count_if(document.intervals.begin(), document.intervals.end(),
                       [reading](const DocumentInterval& interval) {
                         return (interval.readings.*reading).has_value();
                       });
}

bool Summarised(const WorkoutDocument& document, Reading reading) {
  return document.summary && (*document.summary.*reading).has_value();
}

// Times and distances run on from the start, so that the largest is the total.
std::optional<double> Largest(const WorkoutDocument& document, Reading reading) {
  std::optional<double> largest;
  for (const DocumentInterval& interval : document.intervals) {
    const std::optional<double>& value = interval.readings.*reading;
    if (value && (!largest || *value > *largest)) largest = value;
  }
  return largest;
}

// Tells which intervals belong to a pause, its ends included. To be asked about one after the
// other.
class PauseWatch {
 public:
  bool Covers(WorkoutEvent event) {
    const bool was_paused = paused_;
    if (event == WorkoutEvent::kPause) paused_ = true;
    if (event == WorkoutEvent::kResume || event == WorkoutEvent::kEnd) paused_ = false;
    return was_paused || paused_;
  }

 private:
  bool paused_ = false;
};

std::optional<double> Mean(const WorkoutDocument& document, Reading reading) {
  double sum = 0;
  double count = 0;
  PauseWatch pause;
  for (const DocumentInterval& interval : document.intervals) {
    const bool paused = pause.Covers(interval.event);
    const std::optional<double>& value = interval.readings.*reading;
    if (!value || (paused && *value == 0)) continue;
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

// From the distance, which pauses and uneven intervals do not falsify; else the mean. The intervals
// of a ride may hold revolutions in place of a pace.
std::optional<double> AveragePace(const WorkoutDocument& document, const WorkoutFigures& figures) {
  const std::optional<double> mean = Mean(document, &Readings::pace);
  constexpr double kLeastKm = 0.001;  // less is no way to measure a pace by
  const bool has_pace = mean || IsRide(document);
  if (!has_pace || !figures.seconds.value || !figures.km.value || *figures.km.value < kLeastKm)
    return mean;
  const double moving = *figures.seconds.value - figures.paused_seconds;
  return moving > 0 ? moving / *figures.km.value : mean;
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
  return found;
}

bool IsRide(const WorkoutDocument& document) {
  return document.equipment.type == "Bike" || SpeedKindOf(document) == SpeedKind::kRpm;
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

double KilometresPerHour(double pace) {
  constexpr double kSecondsPerHour = 3600;
  constexpr double kFastest = 1e6;  // a pace that is nearly 0 is a mistake, and no number's end
  return std::min(kFastest, kSecondsPerHour / pace);
}

std::vector<Pause> PausesOf(const WorkoutDocument& document) {
  std::vector<Pause> pauses;
  bool paused = false;
  for (const DocumentInterval& interval : document.intervals) {
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
  std::stable_sort(pauses.begin(), pauses.end(),
                   [](const Pause& left, const Pause& right) { return left.from < right.from; });
  return pauses;
}

std::vector<Sample> CourseOf(const WorkoutDocument& document, Reading reading,
                             AcrossPauses across) {
  std::vector<Sample> course;
  bool missing = true;
  bool after_pause = false;
  PauseWatch pause;
  for (const DocumentInterval& interval : document.intervals) {
    const bool stands_still = pause.Covers(interval.event) && across == AcrossPauses::kBreaks;
    const std::optional<double>& seconds = interval.readings.seconds;
    const std::optional<double>& value = interval.readings.*reading;
    const bool measured = value && !(stands_still && *value == 0);
    if (!seconds) continue;
    if (after_pause && interval.event == WorkoutEvent::kResume) missing = true;
    after_pause = across == AcrossPauses::kBreaks && interval.event == WorkoutEvent::kPause;
    if (measured) course.push_back({*seconds, *value, missing});
    missing = !measured;
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
  figures.pace = StatedOr(document, &Readings::pace, AveragePace(document, figures));
  const auto average = [&document](Reading reading) {
    return StatedOr(document, reading, Mean(document, reading));
  };
  figures.spm = average(&Readings::spm);
  figures.rpm = average(&Readings::rpm);
  figures.bpm = average(&Readings::bpm);
  figures.highest_bpm = Largest(document, &Readings::bpm);
  return figures;
}

}  // namespace ipodctl
