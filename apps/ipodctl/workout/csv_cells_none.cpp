// SPDX-License-Identifier: MIT
// Cells for a build that has no library for them: without quotes.
#include "console/text.h"
#include "workout/csv_cells.h"

namespace ipodctl {

CsvSplit SplitCsvCells(const std::string& text, char separator, std::vector<std::string>* cells) {
  cells->clear();
  if (text.find('"') != std::string::npos) return CsvSplit::kMalformed;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(separator, start);
    cells->push_back(Trimmed(text.substr(start, end - start)));
    if (end == std::string::npos) return CsvSplit::kComplete;
    start = end + 1;
  }
}

}  // namespace ipodctl
