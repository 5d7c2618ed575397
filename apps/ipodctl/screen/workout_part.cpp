// SPDX-License-Identifier: MIT
// Draws the workout: its live figures, the curve of the heart rate, and what is saved of it.
#include <algorithm>

#include "console/text.h"
#include "screen/cells.h"
#include "screen/heart_curve.h"
#include "screen/layout.h"
#include "workout/workout_view.h"

namespace ipodctl::screen {

namespace {

using State = WorkoutSnapshot::State;

constexpr int kAxisColumns = 5;

// "5:33 /km", "140 spm"; nothing while there is none.
std::string SpeedText(const Recording& recording, const Reading& reading) {
  if (reading.paused || reading.speed <= 0) return reading.paused ? "paused" : "";
  if (recording.speed_type == IPOD_SPEED_TYPE_PACE) {
    return Clock(static_cast<std::uint64_t>(reading.speed)) + " /km";
  }
  return std::to_string(static_cast<int>(reading.speed)) + " " + SpeedName(recording.speed_type);
}

std::string EquipmentHeading(const WorkoutSnapshot& workout) {
  if (workout.state == State::kNone) return "Workout";
  return "Workout on " + workout.equipment;
}

std::string TimeText(int seconds) {
  return Clock(static_cast<std::uint64_t>(std::max(0, seconds)));
}

std::string Times(const WorkoutSnapshot& workout) {
  if (workout.state == State::kNone || !workout.recording) return {};
  return TimeText(workout.Seconds()) + " of " +
         TimeText(workout.recording->readings.back().seconds);
}

std::string SavedSoFar(const WorkoutSnapshot& workout) {
  if (workout.state != State::kRunning) return workout.outcome;
  return "saved: " + Counted(workout.intervals, "interval") + ", " + Grouped(workout.bytes) +
         " bytes";
}

void DrawCurve(const WorkoutSnapshot& workout, const Area& area, Frame* frame) {
  const HeartCurve curve =
      DrawHeartCurve(*workout.recording, workout.Seconds(), area.rows, area.columns - kAxisColumns);
  const auto last = static_cast<int>(curve.lines.size()) - 1;
  for (int i = 0; i <= last; ++i) {
    const bool edge = i == 0 || i == last;
    const std::string number = std::to_string(i == 0 ? curve.highest_bpm : curve.lowest_bpm);
    const std::string label = edge ? Fit("", 3 - Width(number)) + number + " ┤" : "    │";
    frame->Put(area.row + i, area.column, label, Style::kDim, kAxisColumns);
    frame->Put(area.row + i, area.column + kAxisColumns, curve.lines[static_cast<std::size_t>(i)],
               Style::kHeart, area.columns - kAxisColumns);
  }
}

// In two lines where one has no room. @return how many
int DrawFigures(const WorkoutSnapshot& workout, const Area& inside, Frame* frame) {
  const Reading& reading = ReadingAt(*workout.recording, workout.Seconds());
  const std::string figures = Figures(*workout.recording, reading);
  const std::string speed = SpeedText(*workout.recording, reading);
  const bool beside = Width(figures + "  " + speed) <= inside.columns;
  frame->Put(inside.row, inside.column, beside ? figures + "  " + speed : figures, Style::kStrong,
             inside.columns);
  if (beside) return 1;
  frame->Put(inside.row + 1, inside.column, speed, Style::kStrong, inside.columns);
  return 2;
}

}  // namespace

void DrawWorkout(const WorkoutSnapshot& workout, const Area& area, Frame* frame) {
  const Area inside = frame->Box(area, EquipmentHeading(workout), Times(workout));
  if (workout.state == State::kNone) {
    frame->Put(inside.row, inside.column, "No workout is going on. w starts one.", Style::kDim,
               inside.columns);
    return;
  }
  const int figures = DrawFigures(workout, inside, frame);
  const std::vector<std::string> saved = Wrapped(Harmless(SavedSoFar(workout)), inside.columns);
  const int lines = std::min(static_cast<int>(saved.size()), std::max(1, inside.rows / 2));
  const Area curve = {inside.row + figures, inside.column, inside.rows - figures - lines,
                      inside.columns};
  if (curve.rows > 0) DrawCurve(workout, curve, frame);
  const Style style = workout.state == State::kFailed ? Style::kWarning : Style::kDim;
  for (int i = 0; i < lines; ++i) {
    frame->Put(inside.row + inside.rows - lines + i, inside.column,
               saved[static_cast<std::size_t>(i)], style, inside.columns);
  }
}

}  // namespace ipodctl::screen
