// SPDX-License-Identifier: MIT
// Renders a workout's readings and intervals.
#include "workout/workout_view.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "console/text.h"

namespace ipodctl {

namespace {

constexpr int kPlainLineEverySeconds = 60;

std::string Fixed(double number, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, number);
  return text;
}

std::string Aligned(const std::string& text, std::size_t width) {
  return (text.size() < width ? std::string(width - text.size(), ' ') : std::string()) + text;
}

std::string TimeOf(const Reading& reading) {
  return Clock(static_cast<std::uint64_t>(reading.seconds));
}

std::string Heart(int bpm) { return (bpm == 0 ? "-" : std::to_string(bpm)) + " bpm"; }

std::string Distance(const Recording& recording, const Reading& reading) {
  return Fixed(reading.distance, recording.distance_type == IPOD_DISTANCE_TYPE_KM ? 2 : 1) + " " +
         UnitName(recording.distance_type);
}

double Rounded(double number, double parts) { return std::round(number * parts) / parts; }

}  // namespace

std::string Figures(const Recording& recording, const Reading& reading) {
  return Distance(recording, reading) + "  " + Fixed(reading.kcal, 1) + " kcal  " +
         Heart(reading.bpm);
}

std::string LiveFigures(const Recording& recording, const Reading& reading, std::size_t bytes) {
  return TimeOf(reading) + "  " + Figures(recording, reading) + "  " + Grouped(bytes) + " bytes";
}

WorkoutView::WorkoutView(Output& output, const Recording& recording)
    : output_(output), recording_(recording) {}

void WorkoutView::ShowReading(const Reading& reading, std::size_t bytes) {
  if (!line_.visible()) return;
  line_.ShowBar(reading.paused ? "  Paused " : "  Working",
                static_cast<std::uint64_t>(reading.seconds),
                static_cast<std::uint64_t>(recording_.readings.back().seconds),
                LiveFigures(recording_, reading, bytes));
}

void WorkoutView::ShowInterval(const Interval& interval, std::size_t bytes) {
  ShowObject(interval, bytes);
  if (output_.json()) return;
  const bool goes_on = interval.event == IPOD_INTERVAL_TYPE_CONTINUE;
  const bool due =
      interval.reading.seconds / kPlainLineEverySeconds != last_line_s_ / kPlainLineEverySeconds;
  if (!goes_on || (due && !line_.visible())) {
    line_.Hide();
    ShowLine(interval, bytes);
  }
  ShowReading(interval.reading, bytes);
}

void WorkoutView::ShowLine(const Interval& interval, std::size_t bytes) {
  const Reading& reading = interval.reading;
  last_line_s_ = reading.seconds;
  const bool goes_on = interval.event == IPOD_INTERVAL_TYPE_CONTINUE;
  output_.Line(
      Aligned(TimeOf(reading), 9) + "  " + Padded(goes_on ? "" : EventName(interval.event), 6) +
      Aligned(Distance(recording_, reading), 13) + Aligned(Fixed(reading.kcal, 1) + " kcal", 13) +
      Aligned(Heart(reading.bpm), 9) + Aligned(Grouped(bytes) + " bytes", 16));
}

void WorkoutView::ShowObject(const Interval& interval, std::size_t bytes) {
  const Reading& reading = interval.reading;
  nlohmann::ordered_json json = {
      {"event", EventName(interval.event)},
      {"seconds", reading.seconds},
      {"kcal", Rounded(reading.kcal, 100)},
      {UnitName(recording_.distance_type), Rounded(reading.distance, 100)},
      {SpeedName(recording_.speed_type), static_cast<int>(reading.speed)},
      {"incline", Rounded(reading.incline, 10)},
  };
  if (reading.bpm != 0) json["bpm"] = reading.bpm;
  if (reading.level != -1) json["level"] = reading.level;
  json["bytes"] = bytes;
  output_.Object(json);
}

}  // namespace ipodctl
