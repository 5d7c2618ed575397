// SPDX-License-Identifier: MIT
// What the screen shows, drawn into a frame of any size; one file draws each part.
#pragma once

#include <chrono>
#include <string>

#include "screen/browser.h"
#include "screen/frame.h"
#include "screen/snapshot.h"

namespace ipodctl::screen {

/// Where the parts stand. A part without rows has no room.
struct Layout {
  Area header;
  Area library;
  Area player;
  Area workout;
  Area status;
  Area keys;
};

/// Beside each other where there is width, else below each other. The keys stay longest, and what
/// is playing longer than the workout.
Layout LayOut(int rows, int columns);
/// How many records of the library have room.
int RecordRows(const Layout& layout);

/// All that is drawn.
struct Scene {
  const Snapshot& snapshot;
  const Browser& browser;
  std::chrono::microseconds now;
  bool help = false;
};

Frame Draw(const Scene& scene, int rows, int columns);

// Each draws one part into its area, when that has rows.
void DrawLibrary(const Scene& scene, const Area& area, Frame* frame);
void DrawPlayer(const Snapshot& snapshot, const Area& area, Frame* frame);
void DrawWorkout(const WorkoutSnapshot& workout, const Area& area, Frame* frame);
void DrawKeys(const Snapshot& snapshot, const Area& area, Frame* frame);
void DrawHelp(Frame* frame);

}  // namespace ipodctl::screen
