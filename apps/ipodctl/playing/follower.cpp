// SPDX-License-Identifier: MIT
// Turns notifications into events.
#include "playing/follower.h"

#include <utility>

#include "console/clock.h"
#include "console/failure.h"
#include "console/interrupt.h"

namespace ipodctl {

namespace {

// Basic and extended state changes, track changes, positions in milliseconds and in seconds.
constexpr unsigned long kEvents = 0x0000001F;
constexpr unsigned kLookMs = 100;
// Notifications can get lost, and a paused iPod sends none; a request now and then also finds out
// that the iPod is gone.
constexpr unsigned kQuietLooks = 20;

}  // namespace

Follower::Follower(Session& session, Show show) : session_(session), show_(std::move(show)) {}

void Follower::Run(std::optional<unsigned> duration_ms) {
  session_.Require(session_.ipod().SetNotification(kEvents) != 0, "tell of changes");
  session_.ipod().GetPlayStatus(&last_);
  now_ = ReadNowPlaying(session_);
  show_("start", now_);
  const auto start = SteadyTime();
  const auto over = [&] {
    return duration_ms && SteadyTime() - start >= std::chrono::milliseconds(*duration_ms);
  };
  try {
    while (!over() && PauseMs(kLookMs)) Look();
  } catch (const CommandFailure& failure) {
    // Ctrl-C is how following ends, also where it ends a look.
    if (failure.status() != kInterrupted) throw;
  }
  constexpr std::chrono::milliseconds kToSayGoodbye(300);
  const ToTheEnd parting(session_.ctrl_c(), kToSayGoodbye);
  session_.ipod().SetNotification(0);
}

void Follower::Look() {
  tagIPOD_PLAY_STATUS status = {};
  session_.ipod().GetPlayStatus(&status);
  if (status.tick != last_.tick) {
    quiet_looks_ = 0;
    ApplyChanges(status);
    last_ = status;
  } else if (++quiet_looks_ >= kQuietLooks) {
    quiet_looks_ = 0;
    Ask();
  }
}

void Follower::ApplyChanges(const tagIPOD_PLAY_STATUS& status) {
  const bool moved = status.track_index != last_.track_index || status.state != last_.state ||
                     status.position < last_.position;
  if (moved) {
    // Another list may have started at the same index, so the texts are read again too.
    NowPlaying now = ReadNowPlaying(session_);
    ShowChange(std::exchange(now_, now));
  } else if (status.position != last_.position) {
    now_.position_ms = std::uint64_t{status.position} * 1000;
    show_("position", now_);
  }
}

void Follower::Ask() {
  const NowPlaying before = now_;
  Refresh(session_, &now_);
  ShowChange(before);
}

void Follower::ShowChange(const NowPlaying& before) {
  const bool other_track = now_.index && (now_.index != before.index || now_.title != before.title);
  if (other_track) {
    show_("track", now_);
  } else if (now_.state != before.state) {
    show_("state", now_);
  } else if (now_.position_ms != before.position_ms) {
    show_("position", now_);
  }
}

}  // namespace ipodctl
