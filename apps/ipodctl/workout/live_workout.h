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
  /// Whether its end is written.
  bool over() const { return over_; }
  /// Where it ended, or how far it has come.
  int ended_s() const { return ended_s_; }

  // Each throws a CommandFailure when the iPod does not take what is written. Nothing more may be
  // written then.

  /// Makes sure that the iPod has room for the whole.
  void RequireRoom();
  /// The same; then writes the header and the start, and starts the clock.
  void Start();
  /// Whether the next interval's time has come.
  bool is_due() const;
  /// Writes the next interval, and the summary behind the last one.
  void WriteNext();
  /// Writes an end and a summary now: with them a log is complete, however early.
  void EndEarly();

 private:
  const Interval& next() const { return intervals_[next_]; }
  void Finish(int seconds);

  const Recording& recording_;
  std::vector<Interval> intervals_;
  WorkoutHeader header_;
  WorkoutLog& log_;
  double speed_;
  std::optional<WorkoutClock> clock_;
  std::size_t next_ = 0;
  int ended_s_ = 0;
  bool over_ = false;
};

}  // namespace ipodctl
