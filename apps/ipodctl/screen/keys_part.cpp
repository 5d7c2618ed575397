// SPDX-License-Identifier: MIT
// Draws the line of keys, and the page of all of them.
#include <algorithm>

#include "screen/cells.h"
#include "screen/keys.h"
#include "screen/layout.h"

namespace ipodctl::screen {

namespace {

// The keys that are of use now; in a narrow window those that come last here go first.
std::vector<Action> Useful(const WorkoutSnapshot& workout) {
  const bool running = workout.state == WorkoutSnapshot::State::kRunning;
  return {Action::kHelp,      Action::kQuit,
          Action::kPlayPause, running ? Action::kEndWorkout : Action::kStartWorkout,
          Action::kOpen,      Action::kBack,
          Action::kNext,      Action::kPrevious};
}

int KeyWidth(const KeyBinding& key) { return Width(key.short_name) + Width(key.label) + 1; }

const KeyBinding& BindingOf(Action action) {
  return *std::find_if(AllKeys().begin(), AllKeys().end(),
                       [action](const KeyBinding& key) { return key.action == action; });
}

std::vector<Action> WithRoom(const std::vector<Action>& useful, int columns) {
  constexpr int kGap = 2;
  std::vector<Action> shown;
  for (const Action action : useful) {
    columns -= KeyWidth(BindingOf(action)) + kGap;
    if (columns < -kGap) break;
    shown.push_back(action);
  }
  return shown;
}

}  // namespace

void DrawKeys(const Snapshot& snapshot, const Area& area, Frame* frame) {
  const std::vector<Action> shown = WithRoom(Useful(snapshot.workout), area.columns - 2);
  int column = area.column + 1;
  for (const KeyBinding& key : AllKeys()) {
    if (std::find(shown.begin(), shown.end(), key.action) == shown.end()) continue;
    const int name = Width(key.short_name);
    frame->Put(area.row, column, key.short_name, Style::kKey, name);
    frame->Put(area.row, column + name + 1, key.label, Style::kDim, Width(key.label));
    frame->AddTarget({{area.row, column, 1, KeyWidth(key)}, key.action});
    column += KeyWidth(key) + 2;
  }
}

void DrawHelp(Frame* frame) {
  constexpr int kNames = 11;
  constexpr int kColumns = 54;
  const auto keys = static_cast<int>(AllKeys().size());
  const int columns = std::min(frame->columns(), kColumns);
  const int rows = std::min(frame->rows(), keys + 2);
  const Area area = {(frame->rows() - rows) / 2, (frame->columns() - columns) / 2, rows, columns};
  const Area inside = frame->Box(area, "Keys", "any key closes");
  for (int i = 0; i < std::min(keys, inside.rows); ++i) {
    const KeyBinding& key = AllKeys()[static_cast<std::size_t>(i)];
    frame->Put(inside.row + i, inside.column, key.names, Style::kKey, kNames);
    frame->Put(inside.row + i, inside.column + kNames, key.description, Style::kPlain,
               inside.columns - kNames);
  }
  frame->AddTarget({{0, 0, frame->rows(), frame->columns()}, Action::kHelp});
}

}  // namespace ipodctl::screen
