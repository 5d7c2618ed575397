// SPDX-License-Identifier: MIT
#include "workout/workout_text.h"

#include <cstdio>

namespace test {

namespace {

template <class Value>
std::string Line(const char* format, Value value) {
  char line[128];
  std::snprintf(line, sizeof line, format, value);
  return line;
}

std::string DistanceLine(const Interval& interval, const std::string& before) {
  if (interval.distance_type == 0) return Line("\t\t<km>%.2f</km>\n", interval.distance);
  if (interval.distance_type == 1) return Line("\t\t<floors>%.1f</floors>\n", interval.distance);
  return before;
}

std::string SpeedLine(int type, double speed, const std::string& before) {
  const auto whole = static_cast<int>(speed);
  if (type == 0) return Line("\t\t<pace>%d</pace>\n", whole);
  if (type == 1) return Line("\t\t<spm>%d</spm>\n", whole);
  if (type == 2) return Line("\t\t<rpm>%d</rpm>\n", whole);
  return before;
}

std::string HeartLine(int bpm) { return bpm == 0 ? "" : Line("\t\t<bpm>%d</bpm>\n", bpm); }

// The lines from the seconds to the speed.
std::string Quantities(const Interval& interval, int speed_type) {
  const std::string energy = Line("\t\t<kCal>%.2f</kCal>\n", interval.kcal);
  const std::string distance = DistanceLine(interval, energy);
  return Line("\t\t<sec>%d</sec>\n", interval.seconds) + energy + distance +
         SpeedLine(speed_type, interval.speed, distance);
}

}  // namespace

std::string HeaderText(const Equipment& equipment) {
  static const char* const kTypes[] = {"Treadmill", "Elliptical", "Stepper", "Bike", "Other"};
  const std::string type = equipment.type >= 0 && equipment.type < 5
                               ? std::string("\t\t<type>") + kTypes[equipment.type] + "</type>\n"
                               : "";
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gymData>\n\t<vers>1</vers>\n"
         "\t<equipmentInfo>\n\t\t<manufacturerID>" +
         equipment.manufacturer_id.stored + "</manufacturerID>\n\t\t<manufacturerName>" +
         equipment.manufacturer_name.stored + "</manufacturerName>\n" + type + "\t\t<model>" +
         equipment.model.stored + "</model>\n\t\t<serialNumber>" + equipment.serial_number.stored +
         "</serialNumber>\n\t</equipmentInfo>\n\t<userInfo>\n" +
         Line("\t\t<kg>%.1f</kg>\n", equipment.weight_kg) + "\t</userInfo>\n";
}

std::string IntervalText(const Interval& interval) {
  static const char* const kEvents[] = {"start", "continue", "pause", "resume", "end"};
  const std::string event =
      interval.event >= 0 && interval.event < 5
          ? std::string("\t\t<event>") + kEvents[interval.event] + "</event>\n"
          : "";
  const std::string level =
      interval.level == -1 ? "" : Line("\t\t<level>%d</level>\n", interval.level);
  return "\t<interval>\n" + event + Quantities(interval, interval.speed_type) +
         Line("\t\t<incline>%.1f</incline>\n", interval.incline) + HeartLine(interval.bpm) + level +
         "\t</interval>\n";
}

std::string SummaryText(const Interval& last) {
  return "\t<workoutSummary>\n" + Quantities(last, last.distance_type) + HeartLine(last.bpm) +
         "\t</workoutSummary>\n";
}

}  // namespace test
