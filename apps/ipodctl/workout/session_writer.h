// SPDX-License-Identifier: MIT
// Writes a workout to the iPod through a session.
#pragma once

#include <cstddef>
#include <string>

#include "ipod/session.h"
#include "workout/workout_log.h"

namespace ipodctl {

class SessionWorkoutWriter : public WorkoutLog {
 public:
  SessionWorkoutWriter(Session& session, const DockLine& dock);

  void RequireRoom(std::size_t largest_piece, std::size_t file_size) override;
  void Start(const WorkoutHeader& header) override;
  void Write(const Recording& recording, const Interval& interval) override;
  void Finish(const Recording& recording, const Summary& summary) override;

 protected:
  bool Answers() override;
  std::size_t Written() override;

 private:
  void RequireSports();
  void RequireStorage(std::size_t largest_piece, std::size_t file_size);
  void RequireSpace();
  std::string RefusedOr(const char* otherwise);
  tagIPOD_WORKOUT_FILE File();

  Session& session_;
};

}  // namespace ipodctl
