// SPDX-License-Identifier: MIT
// Reads recorded workouts.
#include "workout/csv_recording.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>

#include "console/failure.h"
#include "console/text.h"

namespace ipodctl {

namespace {

constexpr std::size_t kMostReadings = 100000;  // more than a day, one a second
constexpr int kMostSeconds = 360000;

enum class Quantity { kSeconds, kDistance, kEnergy, kSpeed, kIncline, kHeartRate, kLevel, kEvent };

struct Column {
  const char* name;
  Quantity quantity;
  bool needed;  // a cell may not be empty
  double least;
  double most;
  bool whole;
  std::optional<tagIPOD_DISTANCE_TYPE> distance_type;
  std::optional<tagIPOD_SPEED_TYPE> speed_type;
};

// Within these bounds an interval fits one write to the iPod.
constexpr Column kColumns[] = {
    {"seconds", Quantity::kSeconds, true, 0, kMostSeconds, true, {}, {}},
    {"distance", Quantity::kDistance, true, 0, 99999, false, {}, {}},
    {"km", Quantity::kDistance, true, 0, 99999, false, IPOD_DISTANCE_TYPE_KM, {}},
    {"floors", Quantity::kDistance, true, 0, 99999, false, IPOD_DISTANCE_TYPE_FLOORS, {}},
    {"energy", Quantity::kEnergy, true, 0, 99999, false, {}, {}},
    {"kcal", Quantity::kEnergy, true, 0, 99999, false, {}, {}},
    {"pace", Quantity::kSpeed, true, 0, 99999, false, {}, IPOD_SPEED_TYPE_PACE},
    {"spm", Quantity::kSpeed, true, 0, 99999, false, {}, IPOD_SPEED_TYPE_SPM},
    {"rpm", Quantity::kSpeed, true, 0, 99999, false, {}, IPOD_SPEED_TYPE_RPM},
    {"incline", Quantity::kIncline, false, -90, 90, false, {}, {}},
    {"heart rate", Quantity::kHeartRate, false, 0, 300, true, {}, {}},
    {"bpm", Quantity::kHeartRate, false, 0, 300, true, {}, {}},
    {"level", Quantity::kLevel, false, 0, 999, true, {}, {}},
    {"event", Quantity::kEvent, false, 0, 0, false, {}, {}},
};

std::string Trimmed(const std::string& text) {
  const char* const blanks = " \t\r";
  const std::size_t start = text.find_first_not_of(blanks);
  return start == std::string::npos ? std::string()
                                    : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = line.find(',', start);
    cells.push_back(Trimmed(line.substr(start, comma - start)));
    if (comma == std::string::npos) return cells;
    start = comma + 1;
  }
}

const Column* ColumnByName(std::string name) {
  std::replace(name.begin(), name.end(), '_', ' ');
  for (const Column& column : kColumns) {
    if (SameName(name, column.name)) return &column;
  }
  return nullptr;
}

std::string Bound(double value) { return std::to_string(static_cast<long>(value)); }

class CsvReader {
 public:
  CsvReader(std::istream& stream, const std::string& name, const Equipment& equipment)
      : stream_(stream), name_(name) {
    recording_ = {equipment.type, equipment.distance_type, equipment.speed_type, {}};
  }

  Recording Read();

 private:
  bool NextLine();
  void ReadHeader();
  void RequireColumn(Quantity quantity, const std::string& names) const;
  Reading ReadReading();
  void Store(const Column& column, const std::string& cell, Reading* reading);
  void StoreEvent(const std::string& cell);
  double Number(const Column& column, const std::string& cell) const;
  [[noreturn]] void Fail(const std::string& problem) const;

  std::istream& stream_;
  const std::string& name_;
  Recording recording_;
  std::vector<const Column*> columns_;
  std::string line_;
  unsigned line_number_ = 0;
  bool paused_ = false;
};

Recording CsvReader::Read() {
  ReadHeader();
  while (NextLine()) {
    if (recording_.readings.size() == kMostReadings) {
      Fail("has more than " + std::to_string(kMostReadings) + " readings");
    }
    const Reading reading = ReadReading();
    if (!recording_.readings.empty() && reading.seconds <= recording_.readings.back().seconds) {
      Fail("does not come after the line before it");
    }
    recording_.readings.push_back(reading);
  }
  if (recording_.readings.empty()) {
    throw CommandFailure(kInputFile, name_ + " holds no readings");
  }
  return recording_;
}

// The next line that is not blank.
bool CsvReader::NextLine() {
  while (std::getline(stream_, line_)) {
    ++line_number_;
    if (line_number_ == 1 && line_.compare(0, 3, "\xEF\xBB\xBF") == 0) line_.erase(0, 3);
    if (!Trimmed(line_).empty()) return true;
  }
  return false;
}

void CsvReader::ReadHeader() {
  if (!NextLine()) throw CommandFailure(kInputFile, name_ + " is empty");
  for (const std::string& cell : Cells(line_)) {
    const Column* column = ColumnByName(cell);
    if (column == nullptr) Fail("'" + Printable(cell) + "' is not a column");
    for (const Column* earlier : columns_) {
      if (earlier->quantity == column->quantity) {
        Fail("'" + std::string(earlier->name) + "' and '" + column->name + "' are the same column");
      }
    }
    columns_.push_back(column);
    if (column->distance_type) recording_.distance_type = *column->distance_type;
    if (column->speed_type) recording_.speed_type = *column->speed_type;
  }
  RequireColumn(Quantity::kSeconds, "seconds");
  RequireColumn(Quantity::kDistance, "distance");
  RequireColumn(Quantity::kEnergy, "energy");
  RequireColumn(Quantity::kSpeed, "pace, spm or rpm");
}

void CsvReader::RequireColumn(Quantity quantity, const std::string& names) const {
  for (const Column* column : columns_) {
    if (column->quantity == quantity) return;
  }
  Fail("there is no column " + names);
}

Reading CsvReader::ReadReading() {
  const std::vector<std::string> cells = Cells(line_);
  if (cells.size() != columns_.size()) {
    Fail("has " + Counted(cells.size(), "cell") + ", and the header has " +
         Counted(columns_.size(), "column"));
  }
  Reading reading;
  for (std::size_t i = 0; i < cells.size(); ++i) Store(*columns_[i], cells[i], &reading);
  reading.paused = paused_;
  return reading;
}

void CsvReader::Store(const Column& column, const std::string& cell, Reading* reading) {
  if (cell.empty() && !column.needed) return;
  if (column.quantity == Quantity::kEvent) return StoreEvent(cell);
  const double number = Number(column, cell);
  switch (column.quantity) {
    case Quantity::kSeconds:
      reading->seconds = static_cast<int>(number);
      break;
    case Quantity::kDistance:
      reading->distance = number;
      break;
    case Quantity::kEnergy:
      reading->kcal = number;
      break;
    case Quantity::kSpeed:
      reading->speed = number;
      break;
    case Quantity::kIncline:
      reading->incline = number;
      break;
    case Quantity::kHeartRate:
      reading->bpm = static_cast<int>(number);
      break;
    case Quantity::kLevel:
      reading->level = static_cast<int>(number);
      break;
    case Quantity::kEvent:
      break;
  }
}

// A pause lasts until the line that resumes.
void CsvReader::StoreEvent(const std::string& cell) {
  if (SameName(cell, "pause")) {
    paused_ = true;
  } else if (SameName(cell, "resume")) {
    paused_ = false;
  } else {
    Fail("event '" + Printable(cell) + "' is neither pause nor resume");
  }
}

double CsvReader::Number(const Column& column, const std::string& cell) const {
  const std::string what = std::string(column.name) + " '" + Printable(cell) + "'";
  double number = 0;
  const char* const end = cell.data() + cell.size();
  const std::from_chars_result result = std::from_chars(cell.data(), end, number);
  const bool out_of_range = result.ec == std::errc::result_out_of_range;
  if ((result.ec != std::errc() && !out_of_range) || result.ptr != end) {
    Fail(what + " is not a number");
  }
  // NaN is outside, too.
  const bool inside = number >= column.least && number <= column.most;
  if (out_of_range || !inside) {
    Fail(what + " is not between " + Bound(column.least) + " and " + Bound(column.most));
  }
  if (column.whole && number != static_cast<int>(number)) Fail(what + " is not a whole number");
  return number;
}

void CsvReader::Fail(const std::string& problem) const {
  throw CommandFailure(kInputFile,
                       name_ + ", line " + std::to_string(line_number_) + ": " + problem);
}

}  // namespace

Recording ReadCsvRecording(std::istream& stream, const std::string& name,
                           const Equipment& equipment) {
  return CsvReader(stream, name, equipment).Read();
}

Recording LoadCsvRecording(const std::string& path, const Equipment& equipment) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw CommandFailure(kInputFile, "cannot read " + path);
  return ReadCsvRecording(stream, path, equipment);
}

}  // namespace ipodctl
