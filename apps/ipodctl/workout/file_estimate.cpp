// SPDX-License-Identifier: MIT
// Measures the pieces of the document.
#include "workout/file_estimate.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ipodctl {

namespace {

// The lines that a header has besides those with a value in them.
constexpr const char* kFixedLines[] = {
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
    "<gymData>\n",
    "\t<vers>1</vers>\n",
    "\t<equipmentInfo>\n",
    "\t</equipmentInfo>\n",
    "\t<userInfo>\n",
    "\t</userInfo>\n",
};

// What the iPod itself adds to a document: facts about it, a signature, the end.
constexpr std::size_t kAddedByIpod = 1024;

std::size_t SizeOfElement(const char* name, std::size_t value) {
  return std::strlen("\t\t<></>\n") + 2 * std::strlen(name) + value;
}

std::size_t SizeOfElement(const char* name, const std::string& value) {
  return SizeOfElement(name, value.size());
}

std::size_t Digits(int value) { return std::to_string(value).size(); }

std::size_t Digits(double value, int decimals) {
  return static_cast<std::size_t>(std::snprintf(nullptr, 0, "%.*f", decimals, value));
}

std::size_t SizeOfDistance(tagIPOD_DISTANCE_TYPE type, double distance) {
  return SizeOfElement(UnitName(type), Digits(distance, type == IPOD_DISTANCE_TYPE_KM ? 2 : 1));
}

}  // namespace

HeaderSize SizeOfHeader(const WorkoutHeader& header) {
  HeaderSize size;
  const auto add = [&size](std::size_t line) {
    size.total += line;
    size.largest_line = std::max(size.largest_line, line);
  };
  for (const char* line : kFixedLines) add(std::strlen(line));
  add(SizeOfElement("manufacturerID", header.manufacturer_id));
  add(SizeOfElement("manufacturerName", header.manufacturer_name));
  add(SizeOfElement("type", EquipmentByType(header.equipment).name));
  add(SizeOfElement("model", header.model));
  add(SizeOfElement("serialNumber", header.serial_number));
  add(SizeOfElement("kg", Digits(header.weight_kg, 1)));
  return size;
}

std::size_t SizeOfInterval(const Recording& recording, const Interval& interval) {
  const Reading& reading = interval.reading;
  std::size_t size = std::strlen("\t<interval>\n\t</interval>\n");
  size += SizeOfElement("event", EventName(interval.event));
  size += SizeOfElement("sec", Digits(reading.seconds));
  size += SizeOfElement("kCal", Digits(reading.kcal, 2));
  size += SizeOfDistance(recording.distance_type, reading.distance);
  size += SizeOfElement(SpeedName(recording.speed_type), Digits(static_cast<int>(reading.speed)));
  size += SizeOfElement("incline", Digits(reading.incline, 1));
  if (reading.bpm != 0) size += SizeOfElement("bpm", Digits(reading.bpm));
  if (reading.level != -1) size += SizeOfElement("level", Digits(reading.level));
  return size;
}

std::size_t SizeOfSummary(const Recording& recording, const Summary& summary) {
  std::size_t size = std::strlen("\t<workoutSummary>\n\t</workoutSummary>\n");
  size += SizeOfElement("sec", Digits(summary.seconds));
  size += SizeOfElement("kCal", Digits(summary.kcal, 2));
  size += SizeOfDistance(recording.distance_type, summary.distance);
  // The summary's speed element goes by the distance.
  size += SizeOfElement(recording.distance_type == IPOD_DISTANCE_TYPE_KM ? "pace" : "spm",
                        Digits(static_cast<int>(summary.speed)));
  if (summary.bpm != 0) size += SizeOfElement("bpm", Digits(summary.bpm));
  return size;
}

FileEstimate EstimateFile(const WorkoutHeader& header, const Recording& recording,
                          const std::vector<Interval>& intervals, const Summary& summary) {
  const HeaderSize header_size = SizeOfHeader(header);
  const std::size_t summary_size = SizeOfSummary(recording, summary);
  FileEstimate file = {std::max(header_size.largest_line, summary_size),
                       header_size.total + summary_size + kAddedByIpod};
  for (const Interval& interval : intervals) {
    const std::size_t size = SizeOfInterval(recording, interval);
    file.largest_piece = std::max(file.largest_piece, size);
    file.total += size;
  }
  return file;
}

}  // namespace ipodctl
