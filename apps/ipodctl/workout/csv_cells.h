// SPDX-License-Identifier: MIT
// The cells of one row; one file takes them apart with a library, one does without.
#pragma once

#include <string>
#include <vector>

namespace ipodctl {

enum class CsvSplit {
  kComplete,
  kGoesOn,  // a quote is open at the end
  kMalformed,
};

/// Takes a row apart. Blanks around a cell are no part of it, and neither are its quotes.
/// @param text ends with a line feed
CsvSplit SplitCsvCells(const std::string& text, char separator, std::vector<std::string>* cells);

}  // namespace ipodctl
