// SPDX-License-Identifier: MIT
// Collects the lines of each row, and has them taken apart.
#include "workout/csv_rows.h"

#include <algorithm>
#include <iterator>

#include "workout/csv_cells.h"

namespace ipodctl {

namespace {

constexpr std::size_t kLongestRow = 1 << 14;  // bytes

bool Blank(const std::string& text) { return text.find_first_not_of(" \t\r") == std::string::npos; }

// False at the end of the stream.
bool ReadLine(std::istream& stream, unsigned number, std::string* line) {
  line->clear();
  constexpr int kEnd = std::istream::traits_type::eof();
  for (int byte = stream.get(); byte != kEnd; byte = stream.get()) {
    if (byte == '\n') return true;
    if (line->size() == kLongestRow) throw CsvProblem{number, "is too long"};
    line->push_back(static_cast<char>(byte));
  }
  return !line->empty();
}

char SeparatorOf(const std::string& line) {
  const char separators[] = {',', ';', '\t'};
  const auto fewer = [&line](char left, char right) {
    return std::count(line.begin(), line.end(), left) < std::count(line.begin(), line.end(), right);
  };
  return *std::max_element(std::begin(separators), std::end(separators), fewer);
}

// Takes `text` apart unless the row goes on in the next line.
bool Complete(const std::string& text, CsvRow* row) {
  switch (SplitCsvCells(text, row->separator, &row->cells)) {
    case CsvSplit::kComplete:
      return true;
    case CsvSplit::kMalformed:
      throw CsvProblem{row->line, "has a quote where none can be"};
    case CsvSplit::kGoesOn:
      break;
  }
  if (text.size() > kLongestRow) throw CsvProblem{row->line, "is too long, or lacks a quote"};
  return false;
}

}  // namespace

void ReadCsvRows(std::istream& stream, const std::function<void(const CsvRow& row)>& take) {
  CsvRow row;
  bool first = true;
  std::string text;
  std::string line;
  for (unsigned number = 1; ReadLine(stream, number, &line); ++number) {
    if (number == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
    if (text.empty() && Blank(line)) continue;
    if (first) row.separator = SeparatorOf(line);
    first = false;
    if (text.empty()) row.line = number;
    text += line + "\n";
    if (!Complete(text, &row)) continue;
    text.clear();
    take(row);
  }
  if (!text.empty()) throw CsvProblem{row.line, "has a quote that is not closed"};
}

}  // namespace ipodctl
