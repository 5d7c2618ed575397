// SPDX-License-Identifier: MIT
// Writes a workout to the iPod through the legacy interface, in its older form of the document.
#pragma once

#include <string>

#include "console/output.h"
#include "ipod/legacy_session.h"
#include "workout/workout_log.h"

namespace ipodctl {

class LegacyWorkoutWriter : public WorkoutLog {
 public:
  LegacyWorkoutWriter(LegacySession& session, Output& output, const DockLine& dock);

  /// The legacy interface has no limits; it only finds out whether the iPod accepts workouts.
  void RequireRoom(std::size_t largest_piece, std::size_t file_size) override;
  void Start(const WorkoutHeader& header) override;
  void Write(const Recording& recording, const Interval& interval) override;
  void Finish(const Recording& recording, const Summary& summary) override;

 protected:
  bool Answers() override;
  std::size_t Written() override;

 private:
  [[noreturn]] void FailAt(const std::string& refused, const std::string& unconfirmed);
  std::string Tried();
  void ShowProgress();

  LegacySession& session_;
  Output& output_;
  std::string shown_;  // the progress text shown last
};

}  // namespace ipodctl
