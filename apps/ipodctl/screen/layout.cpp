// SPDX-License-Identifier: MIT
// Divides the screen, and draws what stands around its parts.
#include "screen/layout.h"

#include <algorithm>

#include "console/text.h"
#include "screen/cells.h"

namespace ipodctl::screen {

namespace {

constexpr int kLeastRows = 6;
constexpr int kLeastColumns = 20;
constexpr int kWideColumns = 64;
constexpr int kPlayerRows = 7;
constexpr int kLeastLibraryRows = 5;
constexpr int kLeastWorkoutRows = 5;
constexpr std::chrono::seconds kPatience(1);  // an iPod may take so long without a word about it

void LayOutBeside(int row, int rows, int columns, Layout* layout) {
  const int workout = rows >= kPlayerRows + kLeastWorkoutRows ? std::clamp(rows * 2 / 5, 5, 14) : 0;
  const int left = columns * 11 / 20;
  layout->library = {row, 0, rows - workout, left};
  layout->player = {row, left, rows - workout, columns - left};
  layout->workout = {row + rows - workout, 0, workout, columns};
}

void LayOutBelow(int row, int rows, int columns, Layout* layout) {
  const int player = rows >= kLeastLibraryRows + 5 ? 5 : 0;
  const int left = rows - player;
  const int workout =
      left >= kLeastLibraryRows + kLeastWorkoutRows ? std::clamp(left / 2, 5, 10) : 0;
  const int library = left - workout;
  layout->library = {row, 0, library, columns};
  layout->player = {row + library, 0, player, columns};
  layout->workout = {row + library + player, 0, workout, columns};
}

// What the user may wonder about, the most pressing first; empty when all is well.
std::string Concern(const Scene& scene) {
  const Snapshot& snapshot = scene.snapshot;
  if (!snapshot.docked) return snapshot.trouble;
  const auto waited = scene.now - snapshot.doing_since;
  if (!snapshot.doing.empty() && waited > kPatience) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
    return "waiting for the iPod for " + std::to_string(seconds) + " s: " + snapshot.doing;
  }
  return snapshot.message;
}

std::string Sentence(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  }
  return text;
}

void DrawHeader(const Scene& scene, const Area& area, Frame* frame) {
  const std::string ipod =
      scene.snapshot.docked ? ShownName(scene.snapshot.ipod) : std::string("no iPod");
  frame->Put(area.row, area.column + 1, "ipodctl console", Style::kStrong, area.columns - 1);
  const int taken = Width("ipodctl console") + 3;
  const std::string shown = Cut(Harmless(ipod), area.columns - taken - 1);
  frame->Put(area.row, area.columns - 1 - Width(shown), shown,
             scene.snapshot.docked ? Style::kPlaying : Style::kWarning, Width(shown));
}

void DrawStatus(const Scene& scene, const Area& area, Frame* frame) {
  const std::string concern = Sentence(Concern(scene));
  const std::vector<std::string> lines = Wrapped(Harmless(concern), area.columns - 2);
  for (int i = 0; i < area.rows && i < static_cast<int>(lines.size()); ++i) {
    const bool last = i + 1 == area.rows && i + 1 < static_cast<int>(lines.size());
    const std::string& line = lines[static_cast<std::size_t>(i)];
    frame->Put(area.row + i, area.column + 1, last ? line + " …" : line, Style::kWarning,
               area.columns - 2);
  }
}

}  // namespace

Layout LayOut(int rows, int columns) {
  Layout layout;
  const int status = rows >= 16 && columns < 100 ? 2 : 1;
  const int body = rows - 2 - status;
  layout.header = {0, 0, 1, columns};
  layout.status = {1 + body, 0, status, columns};
  layout.keys = {rows - 1, 0, 1, columns};
  if (columns >= kWideColumns) {
    LayOutBeside(1, body, columns, &layout);
  } else {
    LayOutBelow(1, body, columns, &layout);
  }
  return layout;
}

int RecordRows(const Layout& layout) { return std::max(1, layout.library.rows - 2); }

Frame Draw(const Scene& scene, int rows, int columns) {
  Frame frame(rows, columns);
  if (rows < kLeastRows || columns < kLeastColumns) {
    frame.Put(0, 0, "Too small. q: quit", Style::kWarning, columns);
    return frame;
  }
  const Layout layout = LayOut(rows, columns);
  DrawHeader(scene, layout.header, &frame);
  DrawLibrary(scene, layout.library, &frame);
  if (layout.player.rows > 0) DrawPlayer(scene.snapshot, layout.player, &frame);
  if (layout.workout.rows > 0) DrawWorkout(scene.snapshot.workout, layout.workout, &frame);
  DrawStatus(scene, layout.status, &frame);
  DrawKeys(scene.snapshot, layout.keys, &frame);
  if (scene.help) DrawHelp(&frame);
  return frame;
}

}  // namespace ipodctl::screen
