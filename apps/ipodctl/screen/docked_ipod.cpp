// SPDX-License-Identifier: MIT
// Asks the iPod, and notes its answers.
#include "screen/docked_ipod.h"

#include <utility>

#include "console/clock.h"
#include "console/failure.h"
#include "console/text.h"
#include "playing/control.h"

namespace ipodctl::screen {

namespace {

constexpr std::chrono::microseconds kLookEvery = std::chrono::milliseconds(500);
constexpr int kFailedLooks = 3;

}  // namespace

DockedIpod::DockedIpod(const Options& options, const DockLine& dock,
                       std::shared_ptr<const Recording> recording, Snapshot* snapshot)
    : options_(options),
      dock_(dock),
      recording_(std::move(recording)),
      snapshot_(snapshot),
      session_(options, dock),
      library_(session_, options.hierarchy, &snapshot->library) {
  session_.Identify();
  session_.EnterRemoteUi();
  NoteName();
}

// An iPod without a name is called so.
void DockedIpod::NoteName() {
  wchar_t name[256] = {};
  const bool told = session_.ipod().Command_RequestIpodName(name, 256) != 0;
  snapshot_->ipod = told ? Utf8(name) : "iPod";
}

bool DockedIpod::player_is_due() const { return SteadyTime() - looked_at_ >= kLookEvery; }

// One refusal may be a mistake; an iPod that goes on refusing has forgotten who asks.
void DockedIpod::LookAtPlayer() {
  looked_at_ = SteadyTime();
  NowPlaying now = snapshot_->now;
  try {
    Refresh(session_, &now);
    failed_looks_ = 0;
  } catch (const SessionLost&) {
    throw;
  } catch (const CommandFailure& failure) {
    if (++failed_looks_ < kFailedLooks) return;
    throw SessionLost(failure.status(), failure.what());
  }
  const bool other_track = now.index != snapshot_->now.index;
  snapshot_->now = now;
  if (other_track) snapshot_->playing_count = CountPlayingTracks(session_);
}

void DockedIpod::PlayOrPause() {
  const bool playing = snapshot_->now.state == kPlaying;
  NotePlaying(playing ? PressFor(session_, kPauseButton, kPaused, "pause")
                      : PressFor(session_, kPlayButton, kPlaying, "play",
                                 "; choose a track in the library"));
}

void DockedIpod::Stop() { NotePlaying(PressFor(session_, kStopButton, kStopped, "stop")); }

void DockedIpod::Skip(bool forward) { NotePlaying(ipodctl::Skip(session_, forward)); }

void DockedIpod::Play(const Place& place, unsigned long index) {
  NotePlaying(library_.Play(session_, place, index));
}

void DockedIpod::NotePlaying(NowPlaying now) {
  ReadTexts(session_, &now);
  snapshot_->now = now;
  snapshot_->playing_count = CountPlayingTracks(session_);
}

void DockedIpod::StartWorkout() {
  if (workout_) return;
  log_.emplace(session_, dock_);
  workout_.emplace(options_, *recording_, *log_);
  snapshot_->workout = {};
  snapshot_->workout.equipment = options_.workout.equipment;
  snapshot_->workout.recording = recording_;
  try {
    workout_->RequireRoom();
    workout_->Start();
    NoteWorkout();
  } catch (const CommandFailure& failure) {
    NoteWorkoutOver(WorkoutSnapshot::State::kFailed, failure.what());
  }
}

void DockedIpod::WriteWorkout() {
  try {
    workout_->WriteNext();
    NoteWorkout();
    if (!workout_->is_at_end()) return;
    workout_->Finish();
    NoteWorkoutOver(WorkoutSnapshot::State::kSaved, log_->SavedText());
  } catch (const CommandFailure& failure) {
    NoteWorkoutOver(WorkoutSnapshot::State::kFailed, failure.what());
  }
}

void DockedIpod::EndWorkout() {
  if (!workout_) return;
  try {
    workout_->EndEarly();
    workout_->Finish();
    NoteWorkoutOver(WorkoutSnapshot::State::kSaved, log_->SavedText());
  } catch (const CommandFailure& failure) {
    NoteWorkoutOver(WorkoutSnapshot::State::kFailed, failure.what());
  }
}

void DockedIpod::NoteWorkout() {
  WorkoutSnapshot& workout = snapshot_->workout;
  workout.state = WorkoutSnapshot::State::kRunning;
  workout.clock = workout_->clock();
  workout.intervals = log_->intervals();
  workout.bytes = log_->bytes();
}

void DockedIpod::NoteWorkoutOver(WorkoutSnapshot::State state, const std::string& outcome) {
  WorkoutSnapshot& workout = snapshot_->workout;
  workout.ended_s = workout_->ended_s();
  workout.state = state;
  workout.clock.reset();
  workout.intervals = log_->intervals();
  workout.bytes = log_->bytes();
  workout.outcome = outcome;
  workout_.reset();
}

}  // namespace ipodctl::screen
