// SPDX-License-Identifier: MIT
// The values of a chart, to be read one moment after the other.
#pragma once

#include <string>

#include "report/chart.h"

namespace ipodctl {

/// Elements for the chart's figure: a place for the values, and a slider that chooses the moment.
/// They are hidden until the page's script shows them. Empty when there is nothing to read.
/// @param script's data, for the figure's tag: when the readings were made
struct ChartReadings {
  std::string attributes;  // of the figure
  std::string values;      // above the pictures
  std::string slider;      // below them
};

ChartReadings ReadingsOf(const Chart& chart);

}  // namespace ipodctl
