// SPDX-License-Identifier: MIT
// Rows of separated values.
#pragma once

#include <functional>
#include <istream>
#include <string>
#include <vector>

namespace ipodctl {

struct CsvRow {
  unsigned line = 0;     // where it begins
  char separator = ',';  // of the whole file
  std::vector<std::string> cells;
};

/// What cannot be read, and where.
struct CsvProblem {
  unsigned line;
  std::string text;
};

/// Hands each row that is not blank to `take`. Cells are separated by commas, semicolons or tabs,
/// whichever the first line has most of. Throws a CsvProblem.
void ReadCsvRows(std::istream& stream, const std::function<void(const CsvRow& row)>& take);

}  // namespace ipodctl
