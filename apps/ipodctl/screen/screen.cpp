// SPDX-License-Identifier: MIT
// Turns actions into moves of the browser, and into wishes.
#include "screen/screen.h"

#include <optional>
#include <utility>

#include "screen/keys.h"

namespace ipodctl::screen {

namespace {

Wish PlayTrack(Browser::Track track) {
  return {"playing a track",
          [track = std::move(track)](DockedIpod& ipod) { ipod.Play(track.place, track.index); }};
}

// None for what the session has nothing to do with.
std::optional<Wish> WishFor(Action action) {
  switch (action) {
    case Action::kPlayPause:
      return Wish{"playing or pausing", [](DockedIpod& ipod) { ipod.PlayOrPause(); }};
    case Action::kStop:
      return Wish{"stopping", [](DockedIpod& ipod) { ipod.Stop(); }};
    case Action::kNext:
      return Wish{"skipping", [](DockedIpod& ipod) { ipod.Skip(true); }};
    case Action::kPrevious:
      return Wish{"skipping back", [](DockedIpod& ipod) { ipod.Skip(false); }};
    case Action::kStartWorkout:
      return Wish{"starting a workout", [](DockedIpod& ipod) { ipod.StartWorkout(); }};
    case Action::kEndWorkout:
      return Wish{"ending the workout", [](DockedIpod& ipod) { ipod.EndWorkout(); }};
    default:
      return std::nullopt;
  }
}

}  // namespace

void Screen::Press(char32_t key, const Snapshot& snapshot) {
  const Action action = ActionOf(key);
  // The page of keys goes with the first one.
  if (std::exchange(help_, false) && action != Action::kQuit) return;
  Do(action, snapshot);
}

// A record is pointed at first, and opened when it is clicked again.
void Screen::Click(int row, int column, const Snapshot& snapshot) {
  const std::optional<Target> target = frame_.TargetAt(row, column);
  if (std::exchange(help_, false) || !target) return;
  if (target->action != Action::kPointAt) {
    Do(target->action, snapshot);
  } else if (target->record == browser_.cursor()) {
    Do(Action::kOpen, snapshot);
  } else {
    browser_.PointAt(target->record, snapshot.library);
  }
}

void Screen::Scroll(bool down, const Snapshot& snapshot) {
  constexpr int kLines = 3;
  for (int i = 0; i < kLines; ++i) Do(down ? Action::kDown : Action::kUp, snapshot);
}

void Screen::Do(Action action, const Snapshot& snapshot) {
  if (action == Action::kQuit) left_ = true;
  if (action == Action::kHelp) help_ = true;
  if (const auto track = browser_.Do(action, snapshot.library)) ask_(PlayTrack(*track));
  if (std::optional<Wish> wish = WishFor(action)) ask_(std::move(*wish));
}

const Frame& Screen::Draw(const Snapshot& snapshot, int rows, int columns,
                          std::chrono::microseconds now) {
  browser_.SetRows(RecordRows(LayOut(rows, columns)), snapshot.library);
  frame_ = screen::Draw({snapshot, browser_, now, help_}, rows, columns);
  return frame_;
}

}  // namespace ipodctl::screen
