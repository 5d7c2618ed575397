// SPDX-License-Identifier: MIT
// What every page has around what it shows.
#pragma once

#include <string>

#include "report/wording.h"

namespace ipodctl {

/// A name may be written from right to left without turning the text around it.
std::string NameTag(const std::string& text);

/// A box that tells of something wrong.
std::string NoteTag(const std::string& headline, const std::string& text);

/// A heading cell of a table's row, and the cell behind it. @param value HTML
std::string RowTag(const std::string& label, const std::string& value);

/// A cell with a bar. @param kind its colour, as of the chart's panels @param share of the longest
std::string BarCell(const char* kind, double share);

/// Everything up to what the page shows. @param title plain text @param heading the same as HTML
/// @param lead HTML below the heading; may be empty
std::string PageHead(const Wording& words, const std::string& title, const std::string& heading,
                     const std::string& lead);

/// Everything behind it. @param footer HTML @param scripted whether there are values to read
std::string PageFoot(const std::string& footer, bool scripted);

}  // namespace ipodctl
