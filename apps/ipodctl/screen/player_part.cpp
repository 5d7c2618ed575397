// SPDX-License-Identifier: MIT
// Draws what is playing, with its progress.
#include <algorithm>

#include "console/text.h"
#include "playing/now.h"
#include "screen/cells.h"
#include "screen/layout.h"

namespace ipodctl::screen {

namespace {

const char* Symbol(unsigned char state) {
  switch (state) {
    case kPlaying:
      return "▶";
    case kPaused:
      return "‖";
    case kWindingForward:
      return "»";
    case kWindingBack:
      return "«";
    default:
      return "■";
  }
}

std::string StateHeading(const Snapshot& snapshot) {
  std::string state = StateName(snapshot.now.state);
  state.front() = static_cast<char>(state.front() - 'a' + 'A');
  return snapshot.docked ? state : "Player";
}

std::string TrackOf(const Snapshot& snapshot) {
  if (!snapshot.now.index) return {};
  const std::string track = "track " + Grouped(*snapshot.now.index + 1);
  return snapshot.playing_count ? track + " of " + Grouped(*snapshot.playing_count) : track;
}

// The times at the ends of a bar: 0:12 ━━━━───── 3:45.
void DrawProgress(const NowPlaying& now, int row, const Area& inside, Frame* frame) {
  const std::string position = Clock(now.position_ms / 1000);
  const std::string length = Clock(now.length_ms / 1000);
  const int width = inside.columns - Width(position) - Width(length) - 2;
  if (width < 3) {
    frame->Put(row, inside.column, position + " of " + length, Style::kPlain, inside.columns);
    return;
  }
  const std::uint64_t shown = std::min(now.position_ms, now.length_ms);
  const int done =
      now.length_ms == 0
          ? 0
          : static_cast<int>(shown * static_cast<std::uint64_t>(width) / now.length_ms);
  std::string full;
  std::string rest;
  for (int i = 0; i < width; ++i) (i < done ? full : rest) += i < done ? "━" : "─";
  const int bar = inside.column + Width(position) + 1;
  frame->Put(row, inside.column, position, Style::kPlain, Width(position));
  frame->Put(row, bar, full, Style::kPlaying, done);
  frame->Put(row, bar + done, rest, Style::kDim, width - done);
  frame->Put(row, bar + width + 1, length, Style::kPlain, Width(length));
}

void DrawLoaded(const Snapshot& snapshot, const Area& inside, Frame* frame) {
  const NowPlaying& now = snapshot.now;
  const std::string title =
      std::string(Symbol(now.state)) + " " + ShownName(now.title.value_or(""));
  frame->Put(inside.row, inside.column, title, Style::kStrong, inside.columns);
  if (inside.rows < 5) {
    frame->Put(inside.row + 1, inside.column + 2, Origin(now), Style::kPlain, inside.columns - 2);
    DrawProgress(now, inside.row + 2, inside, frame);
    return;
  }
  frame->Put(inside.row + 1, inside.column + 2, Printable(now.artist.value_or("")), Style::kPlain,
             inside.columns - 2);
  frame->Put(inside.row + 2, inside.column + 2, Printable(now.album.value_or("")), Style::kDim,
             inside.columns - 2);
  DrawProgress(now, inside.row + 4, inside, frame);
}

}  // namespace

void DrawPlayer(const Snapshot& snapshot, const Area& area, Frame* frame) {
  const Area inside = frame->Box(area, StateHeading(snapshot), TrackOf(snapshot));
  frame->AddTarget({area, Action::kPlayPause});
  if (!snapshot.docked) {
    frame->Put(inside.row, inside.column, "No iPod is docked.", Style::kDim, inside.columns);
  } else if (!snapshot.now.index) {
    frame->Put(inside.row, inside.column, "Nothing is loaded.", Style::kDim, inside.columns);
    frame->Put(inside.row + 1, inside.column, "Open a track in the library.", Style::kDim,
               inside.columns);
  } else {
    DrawLoaded(snapshot, inside, frame);
  }
}

}  // namespace ipodctl::screen
