// SPDX-License-Identifier: MIT
// Takes the speed from the pace, or else from how the distance grows.
#include "report/ride_speed.h"

#include <algorithm>
#include <cstddef>

namespace ipodctl {

namespace {

// Distances are written in steps of ten metres, which is a lot for the seconds of one interval.
constexpr double kHalfWindow = 30;  // seconds

std::vector<Sample> FromPace(const WorkoutDocument& document) {
  std::vector<Sample> course = CourseOf(document, &Readings::pace, AcrossPauses::kBreaks);
  for (Sample& sample : course) sample.value = KilometresPerHour(sample.value);
  return course;
}

// The distance without what was written inside of pauses, in stretches from pause to pause.
std::vector<Sample> MovingDistance(const WorkoutDocument& document) {
  const std::vector<Pause> pauses = PausesOf(document);
  std::vector<Sample> moving;
  std::size_t next = 0;  // the first pause that is not over
  bool paused_since = false;
  for (Sample sample : CourseOf(document, &Readings::km, AcrossPauses::kBreaks)) {
    for (; next < pauses.size() && pauses[next].to <= sample.seconds; ++next) paused_since = true;
    if (next < pauses.size() && pauses[next].from < sample.seconds) continue;
    sample.starts_anew = moving.empty() || sample.starts_anew || paused_since;
    paused_since = false;
    moving.push_back(sample);
  }
  return moving;
}

// The speed at each sample of [first, last), which has no gap: the mean over the window around it.
void AddStretch(const std::vector<Sample>& distance, std::size_t first, std::size_t last,
                std::vector<Sample>* course) {
  std::size_t from = first;
  std::size_t to = first;
  bool starts_anew = true;
  for (std::size_t i = first; i < last; ++i) {
    const double now = distance[i].seconds;
    while (distance[from].seconds < now - kHalfWindow) ++from;
    while (to + 1 < last && distance[to + 1].seconds <= now + kHalfWindow) ++to;
    // Where intervals are longer than the window, their neighbours do.
    const std::size_t left = from == i && i > first ? i - 1 : from;
    const std::size_t right = to == i && i + 1 < last ? i + 1 : to;
    const double seconds = distance[right].seconds - distance[left].seconds;
    const double km = distance[right].value - distance[left].value;
    const bool known = seconds > 0 && km >= 0;
    if (known) course->push_back({now, km == 0 ? 0 : KilometresPerHour(seconds / km), starts_anew});
    starts_anew = !known;
  }
}

std::vector<Sample> FromDistance(const WorkoutDocument& document) {
  const std::vector<Sample> distance = MovingDistance(document);
  std::vector<Sample> course;
  for (std::size_t first = 0; first < distance.size();) {
    std::size_t last = first + 1;
    while (last < distance.size() && !distance[last].starts_anew) ++last;
    AddStretch(distance, first, last, &course);
    first = last;
  }
  return course;
}

}  // namespace

RideSpeed RideSpeedOf(const WorkoutDocument& document) {
  RideSpeed speed = {FromPace(document), false};
  if (speed.course.empty()) speed = {FromDistance(document), true};
  return speed;
}

}  // namespace ipodctl
