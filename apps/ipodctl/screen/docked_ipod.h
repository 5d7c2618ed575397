// SPDX-License-Identifier: MIT
// An iPod in the dock, and what the screen does with it. Whatever is found out goes into a
// snapshot.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ipod/session.h"
#include "screen/library_reader.h"
#include "screen/snapshot.h"
#include "workout/live_workout.h"
#include "workout/session_writer.h"

namespace ipodctl::screen {

/// Each operation ends by returning, or by throwing: a SessionLost when there is no use in going
/// on, else a CommandFailure.
class DockedIpod {
 public:
  /// Opens the port and identifies, which lasts some seconds.
  /// @param recording of the workout that can be started
  DockedIpod(const Options& options, const DockLine& dock,
             std::shared_ptr<const Recording> recording, Snapshot* snapshot);

  bool player_is_due() const;
  void LookAtPlayer();
  void PlayOrPause();
  void Stop();
  void Skip(bool forward);
  void Play(const Place& place, unsigned long index);

  std::optional<std::string> Lacks(const View& view) { return library_.Lacks(view); }
  void Read(const View& view) { library_.Read(view); }

  void StartWorkout();
  bool workout_is_due() const { return workout_ && workout_->is_due(); }
  /// Writes what is due of it.
  void WriteWorkout();
  /// Ends one that goes on, and saves it. Throws nothing: the snapshot says what came of it.
  void EndWorkout();

 private:
  void NoteName();
  void NotePlaying(NowPlaying now);
  void NoteWorkout();
  void NoteWorkoutOver(WorkoutSnapshot::State state, const std::string& outcome);

  const Options& options_;
  const DockLine& dock_;
  std::shared_ptr<const Recording> recording_;
  Snapshot* snapshot_;
  Session session_;
  LibraryReader library_;
  std::optional<SessionWorkoutWriter> log_;
  std::optional<LiveWorkout> workout_;  // while it goes on
  std::chrono::microseconds looked_at_{0};
  int failed_looks_ = 0;
};

}  // namespace ipodctl::screen
