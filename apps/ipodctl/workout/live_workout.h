// SPDX-License-Identifier: MIT
// A workout that is written as its clock goes on, one interval at a time, so that whoever writes it
// can do other things in between.
#pragma once

#include <optional>
#include <vector>

#include "options.h"
#include "workout/recording.h"
#include "workout/workout_clock.h"
#include "workout/workout_header.h"
#include "workout/workout_log.h"

namespace ipodctl {

class LiveWorkout {
 public:
  /// @param recording, @param log have to outlive it
  LiveWorkout(const Options& options, const Recording& recording, WorkoutLog& log);

  const std::vector<Interval>& intervals() const { return intervals_; }
  /// The clock of a workout that has started.
  const WorkoutClock& clock() const { return *clock_; }
  /// Whether its end is written, and only the summary is missing.
  bool is_at_end() const { return next_ == intervals_.size(); }
  /// The interval to write next, of one that is not at its end.
  const Interval& next() const { return intervals_[next_]; }
  /// Whether its time has come.
  bool is_due() const { return !is_at_end() && clock_->MsUntil(next().reading.seconds) == 0; }
  /// How far it has come, or where it ended.
  int ended_s() const { return ended_s_; }

  // Each throws a CommandFailure when the iPod does not take what is written. Nothing more may be
  // written then.

  /// Makes sure, before the start, that the iPod has room for the whole.
  void RequireRoom();
  /// Writes the header and the start, and starts the clock.
  void Start();
  void WriteNext();
  /// Writes an end now, behind which only the summary follows. @return the end
  Interval EndEarly();
  /// Writes the summary: with it and an end a log is complete, however early.
  void Finish();

 private:
  const Recording& recording_;
  std::vector<Interval> intervals_;
  WorkoutHeader header_;
  WorkoutLog& log_;
  double speed_;
  std::optional<WorkoutClock> clock_;
  std::size_t next_ = 0;
  int ended_s_ = 0;
};

}  // namespace ipodctl
