// SPDX-License-Identifier: MIT
// The text at the end of a help, in parts: paragraphs, and sections that have a heading.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace usage {

/// What stands, indented, below a heading.
struct FooterSection {
  enum class Kind {
    kProse,     // one paragraph
    kItems,     // a name, some blanks, and what it means
    kVerbatim,  // command lines, or text with a layout of its own
  };

  std::string heading;  // "Exit status"
  Kind kind = Kind::kProse;
  std::vector<std::string> lines;                          // of prose and verbatim text
  std::vector<std::pair<std::string, std::string>> items;  // names and meanings
};

struct Footer {
  std::vector<std::string> paragraphs;  // each on one line
  std::vector<FooterSection> sections;
};

/// @param program the program's name, with which lines of examples begin
Footer ParseFooter(const std::string& text, const std::string& program);

}  // namespace usage
