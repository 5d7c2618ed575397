// SPDX-License-Identifier: MIT
// Finds when each whole distance was reached.
#include "report/splits.h"

#include <algorithm>

#include "report/axis.h"

namespace ipodctl {

namespace {

constexpr double kMostSplits = 50;
constexpr double kShortestRest = 0.005;  // less is what rounding leaves

double StepFor(double distance) {
  return distance <= kMostSplits ? 1 : RoundNumber(distance / kMostSplits);
}

// The time at `seconds` with the clock stopped in pauses. They are in order.
double MovingTime(const std::vector<Pause>& pauses, double seconds) {
  double paused = 0;
  double counted_to = 0;  // pauses of a damaged document may overlap
  for (const Pause& pause : pauses) {
    const double from = std::max(pause.from, counted_to);
    const double to = std::min(pause.to, seconds);
    if (to <= from) continue;
    paused += to - from;
    counted_to = to;
  }
  return seconds - paused;
}

std::optional<double> MeanBetween(const std::vector<Sample>& course, double from, double to) {
  double sum = 0;
  double count = 0;
  for (const Sample& sample : course) {
    if (sample.seconds <= from || sample.seconds > to) continue;
    sum += sample.value;
    ++count;
  }
  return count == 0 ? std::nullopt : std::optional<double>(sum / count);
}

// Walks along the distance and closes a split wherever one ends.
class Walk {
 public:
  Walk(const WorkoutDocument& document, double step)
      : step_(step),
        pauses_(PausesOf(document)),
        heart_(CourseOf(document, &Readings::bpm, AcrossPauses::kBreaks)) {}

  // @param distance not below the one before
  void GoTo(double seconds, double distance) {
    for (auto split = static_cast<int>(split_start_ / step_ + 1e-9) + 1; split * step_ <= distance;
         ++split) {
      const double end = split * step_;
      const double share = (end - distance_) / (distance - distance_);
      Close(seconds_ + share * (seconds - seconds_), end);
    }
    seconds_ = seconds;
    distance_ = distance;
  }

  std::vector<Split> Finish() {
    if (!splits_.empty() && distance_ - split_start_ > kShortestRest) Close(seconds_, distance_);
    return std::move(splits_);
  }

 private:
  void Close(double seconds, double distance) {
    const double moving = MovingTime(pauses_, seconds) - MovingTime(pauses_, start_seconds_);
    splits_.push_back(
        {split_start_, distance, moving, MeanBetween(heart_, start_seconds_, seconds)});
    split_start_ = distance;
    start_seconds_ = seconds;
  }

  double step_;
  std::vector<Pause> pauses_;
  std::vector<Sample> heart_;
  std::vector<Split> splits_;
  double seconds_ = 0;
  double distance_ = 0;
  double start_seconds_ = 0;  // of the open split
  double split_start_ = 0;
};

}  // namespace

std::vector<Split> SplitsOf(const WorkoutDocument& document, const Measures& measures) {
  const std::vector<Sample> course = CourseOf(document, &Readings::km, AcrossPauses::kGoesOn);
  double total = 0;
  for (const Sample& sample : course) total = std::max(total, measures.Distance(sample.value));
  Walk walk(document, StepFor(total));
  double farthest = 0;
  for (const Sample& sample : course) {
    farthest = std::max(farthest, measures.Distance(sample.value));
    walk.GoTo(sample.seconds, farthest);
  }
  return walk.Finish();
}

}  // namespace ipodctl
