// SPDX-License-Identifier: MIT
// The page that lists all workouts of a folder, with sums by week.
#pragma once

#include <string>
#include <vector>

#include "report/presentation.h"
#include "report/workout_figures.h"

namespace ipodctl {

struct OverviewEntry {
  Day day;
  std::string link;   // to the workout's page
  std::string title;  // plain text
  WorkoutFigures figures;
  bool damaged = false;
};

struct Overview {
  std::vector<OverviewEntry> workouts;  // newest first
  std::vector<std::string> left_out;    // names of files that could not be read
  std::string folder;
};

/// @param overview has at least one workout
/// @returns HTML that is well-formed XML too
std::string RenderOverview(const Overview& overview, const Presentation& presentation);

}  // namespace ipodctl
