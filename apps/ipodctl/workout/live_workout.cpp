// SPDX-License-Identifier: MIT
// Writes intervals when their time has come.
#include "workout/live_workout.h"

#include <algorithm>

#include "workout/file_estimate.h"

namespace ipodctl {

LiveWorkout::LiveWorkout(const Options& options, const Recording& recording, WorkoutLog& log)
    : recording_(recording),
      intervals_(IntervalsOf(recording, options.workout.interval_s)),
      header_(HeaderFor(options)),
      log_(log),
      speed_(options.workout.speed) {}

void LiveWorkout::RequireRoom() {
  const Summary summary = SummaryAt(recording_, intervals_.back().reading.seconds);
  const FileEstimate file = EstimateFile(header_, recording_, intervals_, summary);
  log_.RequireRoom(file.largest_piece, file.total);
}

// The start is written at once: a log that has a header has a start, too.
void LiveWorkout::Start() {
  log_.Start(header_);
  clock_.emplace(intervals_.front().reading.seconds, speed_);
  WriteNext();
}

void LiveWorkout::WriteNext() {
  log_.Write(recording_, next());
  ended_s_ = next().reading.seconds;
  ++next_;
}

// When the line is slower than the clock, the next interval to write is where the log ends.
Interval LiveWorkout::EndEarly() {
  const int now_s = std::min(static_cast<int>(clock_->Seconds()), next().reading.seconds);
  Interval end = {IPOD_INTERVAL_TYPE_END, ReadingAt(recording_, now_s)};
  end.reading.seconds = now_s;
  log_.Write(recording_, end);
  ended_s_ = now_s;
  next_ = intervals_.size();
  return end;
}

void LiveWorkout::Finish() { log_.Finish(recording_, SummaryAt(recording_, ended_s_)); }

}  // namespace ipodctl
