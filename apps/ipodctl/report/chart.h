// SPDX-License-Identifier: MIT
// The chart of a workout: a panel for each course over one time axis, as an SVG picture.
#pragma once

#include <string>
#include <vector>

#include "report/axis.h"
#include "report/presentation.h"
#include "report/workout_figures.h"

namespace ipodctl {

/// One course and its axis.
struct Panel {
  const char* name = "";  // its class in the style sheet
  std::string title;
  std::string unit;
  std::string detail;   // its average or total
  std::string summary;  // the same for those who do not see the picture
  std::vector<Sample> course;
  Scale scale;
  int decimals = 0;
  bool clock = false;       // labels are clock times
  bool low_on_top = false;  // so that faster is higher where fewer seconds are faster
  bool filled = false;      // down to 0
  bool cut_off = false;     // some samples are beyond the scale, and drawn at its edge
};

struct Chart {
  Wording words = Wording();
  std::vector<Panel> panels;  // empty when there is nothing to draw
  std::vector<Pause> pauses;
  double end = 1;  // seconds
  bool speed_from_distance = false;
};

/// How a picture is laid out, in units that are pixels where it is shown at its own size.
struct ChartShape {
  const char* name;  // its class in the style sheet
  int width;
  int panel_height;
  std::size_t most_time_ticks;
};

/// For screens and paper; and for phones, whose width would shrink the letters of the other.
constexpr ChartShape kWideChart = {"wide", 760, 132, 9};
constexpr ChartShape kNarrowChart = {"narrow", 340, 116, 5};

Chart PlanChart(const WorkoutDocument& document, const WorkoutFigures& figures,
                const Presentation& presentation = {});

/// A value of the panel as it is written, without its unit.
std::string ValueText(const Panel& panel, double value, const Wording& words);

/// @returns an <svg> element for use inside a page
std::string RenderChart(const Chart& chart, const ChartShape& shape);

}  // namespace ipodctl
