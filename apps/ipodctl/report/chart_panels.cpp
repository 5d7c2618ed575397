// SPDX-License-Identifier: MIT
// What the chart shows, and on which scales.
#include <algorithm>

#include "report/chart.h"
#include "report/markup.h"

namespace ipodctl {

namespace {

constexpr std::size_t kMostTicks = 7;

struct Range {
  double low = 0;
  double high = 0;
};

Range RangeOf(const std::vector<Sample>& course) {
  const auto [low, high] = std::minmax_element(
      course.begin(), course.end(),
      [](const Sample& left, const Sample& right) { return left.value < right.value; });
  return {low->value, high->value};
}

double Median(const std::vector<Sample>& course) {
  std::vector<double> values;
  values.reserve(course.size());
  for (const Sample& sample : course) values.push_back(sample.value);
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

std::string Between(const Panel& panel, const Range& range) {
  const auto text = [&panel](double value) {
    return panel.clock ? ClockText(value) : Short(value, panel.decimals);
  };
  return panel.title + " between " + text(range.low) + " and " + text(range.high) + " " +
         panel.unit;
}

std::string Average(const Figure& figure, bool clock) {
  if (!figure.value) return {};
  return "average " + (clock ? ClockText(*figure.value) : Short(*figure.value, 0));
}

void AddHeartRate(const WorkoutDocument& document, const WorkoutFigures& figures, Chart* chart) {
  Panel panel = {"heart", "Heart rate", "bpm",
                 {},      {},           CourseOf(document, &Readings::bpm, AcrossPauses::kBreaks),
                 {}};
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(range.low, range.high, kMostTicks, 5);
  panel.detail = Average(figures.bpm, false) + ", highest " + Short(range.high, 0);
  panel.summary = Between(panel, range);
  chart->panels.push_back(std::move(panel));
}

// Nearly standing still takes hours for a kilometre, and would flatten all the rest.
void ScalePace(const Range& range, Panel* panel) {
  const double slowest = std::max(2 * Median(panel->course), range.low + 60);
  panel->clock = true;
  panel->low_on_top = true;
  panel->scale = ClockScale(range.low, std::min(range.high, slowest), kMostTicks);
  panel->cut_off = range.high > panel->scale.high;
}

void AddPace(const WorkoutDocument& document, const WorkoutFigures& figures, Chart* chart) {
  Panel panel = {"speed", "Pace", "min/km",
                 {},      {},     CourseOf(document, &Readings::pace, AcrossPauses::kBreaks),
                 {}};
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  ScalePace(range, &panel);
  panel.detail = Average(figures.pace, true);
  panel.summary = Between(panel, range);
  chart->panels.push_back(std::move(panel));
}

void AddRate(const char* title, std::vector<Sample> course, const Figure& average, Chart* chart) {
  Panel panel = {"speed", title, "per minute", {}, {}, std::move(course), {}};
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(range.low, range.high, kMostTicks, 5);
  panel.detail = Average(average, false);
  panel.summary = Between(panel, range);
  chart->panels.push_back(std::move(panel));
}

void AddSpeed(const WorkoutDocument& document, const WorkoutFigures& figures, Chart* chart) {
  switch (SpeedKindOf(document)) {
    case SpeedKind::kPace:
      return AddPace(document, figures, chart);
    case SpeedKind::kSpm:
      return AddRate("Steps", CourseOf(document, &Readings::spm, AcrossPauses::kBreaks),
                     figures.spm, chart);
    case SpeedKind::kRpm:
      return AddRate("Revolutions", CourseOf(document, &Readings::rpm, AcrossPauses::kBreaks),
                     figures.rpm, chart);
    case SpeedKind::kNone:
      return;
  }
}

void AddDistance(const WorkoutDocument& document, const WorkoutFigures& figures, Chart* chart) {
  const bool floors = DistanceKindOf(document) == DistanceKind::kFloors;
  Panel panel = {"distance", "Distance", "km", {}, {}, {}, {}};
  panel.decimals = 2;
  panel.filled = true;
  if (floors) {
    panel.title = "Climb";
    panel.unit = "floors";
    panel.decimals = 1;
  }
  panel.course =
      CourseOf(document, floors ? &Readings::floors : &Readings::km, AcrossPauses::kGoesOn);
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(0, range.high, kMostTicks, floors ? 1 : 0.05);
  const double total = (floors ? figures.floors : figures.km).value.value_or(range.high);
  panel.detail = Fixed(total, panel.decimals) + " " + panel.unit + " in all";
  panel.summary = Between(panel, range);
  chart->panels.push_back(std::move(panel));
}

}  // namespace

Chart PlanChart(const WorkoutDocument& document, const WorkoutFigures& figures) {
  Chart chart;
  chart.pauses = PausesOf(document);
  chart.end = std::max(1.0, LastSecond(document));
  AddHeartRate(document, figures, &chart);
  AddSpeed(document, figures, &chart);
  AddDistance(document, figures, &chart);
  return chart;
}

}  // namespace ipodctl
