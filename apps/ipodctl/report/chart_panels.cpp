// SPDX-License-Identifier: MIT
// What the chart shows, and on which scales.
#include <algorithm>

#include "report/chart.h"
#include "report/markup.h"
#include "report/ride_speed.h"

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

// Nearly standing still takes hours for a kilometre, and would flatten all the rest.
void ScalePace(const Range& range, Panel* panel) {
  const double slowest = std::max(2 * Median(panel->course), range.low + 60);
  panel->scale = ClockScale(range.low, std::min(range.high, slowest), kMostTicks);
  panel->cut_off = range.high > panel->scale.high;
}

class Plan {
 public:
  Plan(const WorkoutDocument& document, const WorkoutFigures& figures,
       const Presentation& presentation)
      : document_(document),
        figures_(figures),
        words_(presentation.words),
        measures_(presentation.measures) {}

  Chart Make();

 private:
  void AddHeartRate();
  void AddPace();
  void AddRideSpeed();
  void AddRate(const char* name, Phrase title, Phrase unit, std::vector<Sample> course,
               const Figure& average);
  void AddSpeeds();
  void AddDistance();
  void AddInclination();
  void Add(Panel panel, const Range& range);

  std::vector<Sample> Course(std::optional<double> Readings::*reading) const {
    return CourseOf(document_, reading, AcrossPauses::kBreaks);
  }
  Panel PanelOf(const char* name, Phrase title, Phrase unit, std::vector<Sample> course) const;
  std::string Average(const Panel& panel, const std::optional<double>& value) const;

  const WorkoutDocument& document_;
  const WorkoutFigures& figures_;
  const Wording& words_;
  const Measures& measures_;
  Chart chart_;
};

Panel Plan::PanelOf(const char* name, Phrase title, Phrase unit, std::vector<Sample> course) const {
  Panel panel;
  panel.name = name;
  panel.title = words_.Say(title);
  panel.unit = words_.Say(unit);
  panel.course = std::move(course);
  return panel;
}

std::string Plan::Average(const Panel& panel, const std::optional<double>& value) const {
  if (!value) return {};
  return words_.Say(Phrase::kAverageOf, {ValueText(panel, *value, words_)});
}

void Plan::Add(Panel panel, const Range& range) {
  panel.summary = words_.Say(Phrase::kBetween, {panel.title, ValueText(panel, range.low, words_),
                                                ValueText(panel, range.high, words_), panel.unit});
  chart_.panels.push_back(std::move(panel));
}

void Plan::AddHeartRate() {
  Panel panel =
      PanelOf("heart", Phrase::kHeartRate, Phrase::kBeatsPerMinute, Course(&Readings::bpm));
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(range.low, range.high, kMostTicks, 5);
  panel.detail = words_.Say(
      Phrase::kAverageAndHighestOf,
      {words_.Short(figures_.bpm.value.value_or(range.high), 0), words_.Short(range.high, 0)});
  Add(std::move(panel), range);
}

void Plan::AddPace() {
  Panel panel = PanelOf("speed", Phrase::kPace, measures_.pace_unit(), Course(&Readings::pace));
  if (panel.course.empty()) return;
  for (Sample& sample : panel.course) sample.value = measures_.Pace(sample.value);
  const Range range = RangeOf(panel.course);
  panel.clock = true;
  panel.low_on_top = true;
  ScalePace(range, &panel);
  if (figures_.pace.value) panel.detail = Average(panel, measures_.Pace(*figures_.pace.value));
  Add(std::move(panel), range);
}

void Plan::AddRideSpeed() {
  RideSpeed speed = RideSpeedOf(document_);
  if (speed.course.empty()) return;
  chart_.speed_from_distance = speed.from_distance;
  Panel panel = PanelOf("speed", Phrase::kSpeed, measures_.speed_unit(), std::move(speed.course));
  for (Sample& sample : panel.course) sample.value = measures_.Speed(sample.value);
  panel.decimals = 1;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(range.low, range.high, kMostTicks, 1);
  if (figures_.pace.value) {
    panel.detail = Average(panel, measures_.Speed(KilometresPerHour(*figures_.pace.value)));
  }
  Add(std::move(panel), range);
}

void Plan::AddRate(const char* name, Phrase title, Phrase unit, std::vector<Sample> course,
                   const Figure& average) {
  Panel panel = PanelOf(name, title, unit, std::move(course));
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(range.low, range.high, kMostTicks, 5);
  panel.detail = Average(panel, average.value);
  Add(std::move(panel), range);
}

void Plan::AddSpeeds() {
  if (IsRide(document_)) {
    AddRideSpeed();
    AddRate("cadence", Phrase::kCadence, Phrase::kRevolutionsPerMinute, Course(&Readings::rpm),
            figures_.rpm);
  } else if (SpeedKindOf(document_) == SpeedKind::kSpm) {
    AddRate("speed", Phrase::kSteps, Phrase::kPerMinute, Course(&Readings::spm), figures_.spm);
  } else {
    AddPace();
  }
}

void Plan::AddDistance() {
  const bool floors = DistanceKindOf(document_) == DistanceKind::kFloors;
  Panel panel = PanelOf(
      "distance", floors ? Phrase::kClimb : Phrase::kDistance,
      floors ? Phrase::kFloors : measures_.distance_unit(),
      CourseOf(document_, floors ? &Readings::floors : &Readings::km, AcrossPauses::kGoesOn));
  if (panel.course.empty()) return;
  const auto shown = [&](double value) { return floors ? value : measures_.Distance(value); };
  for (Sample& sample : panel.course) sample.value = shown(sample.value);
  panel.decimals = floors ? 1 : 2;
  panel.filled = true;
  const Range range = RangeOf(panel.course);
  panel.scale = NumberScale(0, range.high, kMostTicks, floors ? 1 : 0.05);
  const Figure& stated = floors ? figures_.floors : figures_.km;
  const double total = stated.value ? shown(*stated.value) : range.high;
  panel.detail =
      words_.Say(Phrase::kInAllOf, {words_.Fixed(total, panel.decimals) + " " + panel.unit});
  Add(std::move(panel), range);
}

// Consoles write 0 where nothing can be inclined.
void Plan::AddInclination() {
  Panel panel =
      PanelOf("incline", Phrase::kInclination, Phrase::kPercent, Course(&Readings::incline));
  if (panel.course.empty()) return;
  const Range range = RangeOf(panel.course);
  if (range.low == 0 && range.high == 0) return;
  panel.decimals = 1;
  panel.filled = true;
  panel.scale = NumberScale(std::min(range.low, 0.0), std::max(range.high, 0.0), kMostTicks, 0.5);
  panel.detail = words_.Say(Phrase::kHighestOf, {words_.Short(range.high, 1) + " " + panel.unit});
  Add(std::move(panel), range);
}

Chart Plan::Make() {
  chart_.words = words_;
  chart_.pauses = PausesOf(document_);
  chart_.end = std::max(1.0, LastSecond(document_));
  AddHeartRate();
  AddSpeeds();
  AddInclination();
  AddDistance();
  return std::move(chart_);
}

}  // namespace

std::string ValueText(const Panel& panel, double value, const Wording& words) {
  return panel.clock ? ClockText(value) : words.Short(value, panel.decimals);
}

Chart PlanChart(const WorkoutDocument& document, const WorkoutFigures& figures,
                const Presentation& presentation) {
  return Plan(document, figures, presentation).Make();
}

}  // namespace ipodctl
