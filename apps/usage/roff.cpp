// SPDX-License-Identifier: MIT
#include "usage/roff.h"

#include <cctype>

#include "usage/build.h"

namespace usage {

std::string Roff(const std::string& text) {
  std::string roff;
  bool line_begins = true;
  for (const char c : text) {
    if (line_begins && (c == '.' || c == '\'')) roff += "\\&";
    line_begins = c == '\n';
    if (c == '\\') {
      roff += "\\e";
    } else if (c == '-') {
      roff += "\\-";
    } else if (c == '\'') {
      roff += "\\(aq";
    } else {
      roff += c;
    }
  }
  return roff;
}

std::string RoffBold(const std::string& text) { return "\\fB" + Roff(text) + "\\fR"; }

std::string RoffItalic(const std::string& text) { return "\\fI" + Roff(text) + "\\fR"; }

std::string RoffTitle(const std::string& name, int section, const std::string& manual) {
  std::string capitals = name;
  for (char& c : capitals) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return ".TH " + Roff(capitals) + " " + std::to_string(section) + " " + kBuildDate +
         " \"ipodcomm " + kVersion + "\" \"" + manual + "\"\n.nh\n";
}

}  // namespace usage
