// SPDX-License-Identifier: MIT
// Cells by libcsv.
#include <csv.h>

#include <new>

#include "workout/csv_cells.h"

namespace ipodctl {

namespace {

struct Row {
  std::vector<std::string>* cells;
  bool complete = false;
};

void TakeCell(void* text, std::size_t length, void* row) {
  static_cast<Row*>(row)->cells->emplace_back(static_cast<const char*>(text), length);
}

void EndRow(int /*terminator*/, void* row) { static_cast<Row*>(row)->complete = true; }

}  // namespace

CsvSplit SplitCsvCells(const std::string& text, char separator, std::vector<std::string>* cells) {
  cells->clear();
  csv_parser parser = {};
  if (csv_init(&parser, CSV_STRICT) != 0) throw std::bad_alloc();
  csv_set_delim(&parser, static_cast<unsigned char>(separator));
  Row row = {cells};
  const bool parsed =
      csv_parse(&parser, text.data(), text.size(), TakeCell, EndRow, &row) == text.size();
  csv_free(&parser);
  if (!parsed) return CsvSplit::kMalformed;
  return row.complete ? CsvSplit::kComplete : CsvSplit::kGoesOn;
}

}  // namespace ipodctl
