// SPDX-License-Identifier: MIT
// Reads recorded workouts.
#include "workout/csv_recording.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <iostream>

#include "console/failure.h"
#include "console/system.h"
#include "console/text.h"
#include "workout/csv_columns.h"
#include "workout/csv_rows.h"

namespace ipodctl {

namespace {

constexpr std::size_t kMostReadings = 100000;  // more than a day, one a second

std::string Bound(double value) { return std::to_string(static_cast<long>(value)); }

std::string Figure(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

class CsvReader {
 public:
  CsvReader(const std::string& name, const Equipment& equipment,
            std::vector<std::string>* unknown_columns)
      : name_(name), unknown_columns_(unknown_columns) {
    recording_ = {equipment.type, equipment.distance_type, equipment.speed_type, {}};
  }

  Recording Read(std::istream& stream);

 private:
  void Take(const CsvRow& row);
  void ReadHeader(const CsvRow& row);
  void AddColumn(const CsvColumn& column);
  void RequireColumn(Quantity quantity, const std::string& names) const;
  void RequireCells(const CsvRow& row) const;
  Reading ReadReading(const CsvRow& row);
  void RequireProgress(const Reading& reading) const;
  void Store(const CsvColumn& column, const std::string& cell, Reading* reading);
  void StoreEvent(const std::string& cell);
  double Number(const CsvColumn& column, const std::string& cell) const;
  [[noreturn]] void Fail(const std::string& problem) const;

  const std::string& name_;
  std::vector<std::string>* unknown_columns_;
  Recording recording_;
  std::vector<const CsvColumn*> columns_;  // null where unknown
  unsigned line_ = 0;
  char separator_ = ',';
  bool paused_ = false;
};

Recording CsvReader::Read(std::istream& stream) {
  try {
    ReadCsvRows(stream, [this](const CsvRow& row) { Take(row); });
  } catch (const CsvProblem& problem) {
    line_ = problem.line;
    Fail(problem.text);
  }
  if (columns_.empty()) throw CommandFailure(kInputFile, name_ + " is empty");
  if (recording_.readings.empty()) {
    throw CommandFailure(kInputFile, name_ + " holds no readings");
  }
  return recording_;
}

void CsvReader::Take(const CsvRow& row) {
  line_ = row.line;
  separator_ = row.separator;
  if (columns_.empty()) return ReadHeader(row);
  if (recording_.readings.size() == kMostReadings) {
    Fail("has more than " + std::to_string(kMostReadings) + " readings");
  }
  RequireCells(row);
  const Reading reading = ReadReading(row);
  RequireProgress(reading);
  recording_.readings.push_back(reading);
}

void CsvReader::ReadHeader(const CsvRow& row) {
  for (const std::string& cell : row.cells) {
    const CsvColumn* column = CsvColumnByName(cell);
    if (column != nullptr) AddColumn(*column);
    if (column == nullptr && !Trimmed(cell).empty()) unknown_columns_->push_back(Trimmed(cell));
    columns_.push_back(column);
  }
  RequireColumn(Quantity::kSeconds, "seconds");
  RequireColumn(Quantity::kDistance, "distance");
  RequireColumn(Quantity::kEnergy, "energy");
  RequireColumn(Quantity::kSpeed, "pace, spm or rpm");
}

void CsvReader::AddColumn(const CsvColumn& column) {
  for (const CsvColumn* earlier : columns_) {
    if (earlier != nullptr && earlier->quantity == column.quantity) {
      Fail("'" + std::string(earlier->name) + "' and '" + column.name + "' are the same column");
    }
  }
  if (column.distance_type) recording_.distance_type = *column.distance_type;
  if (column.speed_type) recording_.speed_type = *column.speed_type;
}

void CsvReader::RequireColumn(Quantity quantity, const std::string& names) const {
  for (const CsvColumn* column : columns_) {
    if (column != nullptr && column->quantity == quantity) return;
  }
  Fail("there is no column " + names + "; columns are " + kCsvColumnNames);
}

// Spreadsheets fill rows up with empty cells.
void CsvReader::RequireCells(const CsvRow& row) const {
  const std::size_t count = row.cells.size();
  const auto empty = [](const std::string& cell) { return Trimmed(cell).empty(); };
  if (count >= columns_.size() &&
      std::all_of(row.cells.begin() + static_cast<std::ptrdiff_t>(columns_.size()), row.cells.end(),
                  empty)) {
    return;
  }
  Fail("has " + Counted(count, "cell") + ", and the header has " +
       Counted(columns_.size(), "column"));
}

Reading CsvReader::ReadReading(const CsvRow& row) {
  Reading reading;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i] != nullptr) Store(*columns_[i], Trimmed(row.cells[i]), &reading);
  }
  reading.paused = paused_;
  return reading;
}

// What is counted since the start does not become less.
void CsvReader::RequireProgress(const Reading& reading) const {
  if (recording_.readings.empty()) return;
  const Reading& before = recording_.readings.back();
  if (reading.seconds <= before.seconds) Fail("does not come after the line before it");
  const auto require = [this](const char* what, double now, double then) {
    if (now >= then) return;
    Fail(std::string(what) + " goes back from " + Figure(then) + " to " + Figure(now) +
         "; it is counted since the start");
  };
  require("distance", reading.distance, before.distance);
  require("energy", reading.kcal, before.kcal);
}

void CsvReader::Store(const CsvColumn& column, const std::string& cell, Reading* reading) {
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

double CsvReader::Number(const CsvColumn& column, const std::string& cell) const {
  const std::string what = std::string(column.name) + " '" + Printable(cell) + "'";
  std::string text = cell;
  // Where a comma is no separator, numbers are written with one.
  if (separator_ != ',') std::replace(text.begin(), text.end(), ',', '.');
  double number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
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
  throw CommandFailure(kInputFile, name_ + ", line " + std::to_string(line_) + ": " + problem);
}

void TellIgnored(const std::string& name, const std::vector<std::string>& columns) {
  if (columns.empty()) return;
  std::string list;
  for (const std::string& column : columns) {
    list += (list.empty() ? "'" : ", '") + Printable(column) + "'";
  }
  std::fprintf(stderr, "ipodctl: %s: ignoring what no column is named by: %s; columns are %s.\n",
               name.c_str(), list.c_str(), kCsvColumnNames);
}

}  // namespace

Recording ReadCsvRecording(std::istream& stream, const std::string& name,
                           const Equipment& equipment, std::vector<std::string>* unknown_columns) {
  return CsvReader(name, equipment, unknown_columns).Read(stream);
}

Recording LoadCsvRecording(const std::string& path, const Equipment& equipment) {
  const bool from_input = path == "-";
  const std::string name = from_input ? "standard input" : path;
  std::ifstream file;
  if (from_input) {
    ReadInputAsBytes();
  } else {
    file.open(path, std::ios::binary);
    if (!file) throw CommandFailure(kInputFile, "cannot read " + path);
  }
  std::vector<std::string> unknown_columns;
  Recording recording =
      ReadCsvRecording(from_input ? std::cin : file, name, equipment, &unknown_columns);
  TellIgnored(name, unknown_columns);
  return recording;
}

}  // namespace ipodctl
