// SPDX-License-Identifier: MIT
// Shows a workout as it is written: a moving line on a terminal, else a line now and then.
#pragma once

#include <cstddef>
#include <string>

#include "console/output.h"
#include "console/progress.h"
#include "workout/recording.h"

namespace ipodctl {

/// "0.12 km  8.4 kcal  118 bpm"
std::string Figures(const Recording& recording, const Reading& reading);
/// "1:05  0.12 km  8.4 kcal  118 bpm  3,204 bytes": what the live line says.
std::string LiveFigures(const Recording& recording, const Reading& reading, std::size_t bytes);

class WorkoutView {
 public:
  WorkoutView(Output& output, const Recording& recording);

  /// Shows the state between intervals.
  void ShowReading(const Reading& reading, std::size_t bytes);
  /// Shows an interval that is written.
  void ShowInterval(const Interval& interval, std::size_t bytes);
  void Hide() { line_.Hide(); }

 private:
  void ShowLine(const Interval& interval, std::size_t bytes);
  void ShowObject(const Interval& interval, std::size_t bytes);

  Output& output_;
  const Recording& recording_;
  StatusLine line_;
  int last_line_s_ = 0;
};

}  // namespace ipodctl
