// SPDX-License-Identifier: MIT
#include "usage/footer.h"

#include <algorithm>

namespace usage {

namespace {

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

bool Indented(const std::string& line) { return line.rfind("  ", 0) == 0; }

// Where the blanks between an item's name and its meaning begin; npos in a line that has none.
std::size_t GapIn(const std::string& line) { return line.find("  "); }

void AddItem(const std::string& line, FooterSection* section) {
  const std::size_t gap = GapIn(line);
  if (gap == 0 || gap == std::string::npos) {  // goes on with the item before
    section->items.back().second += " " + line.substr(line.find_first_not_of(' '));
    return;
  }
  section->items.emplace_back(line.substr(0, gap), line.substr(line.find_first_not_of(' ', gap)));
}

void FillSection(const std::string& program, FooterSection* section) {
  std::vector<std::string>& lines = section->lines;
  if (lines.empty()) return;
  const std::string& first = lines.front();
  const bool deeper = std::any_of(lines.begin(), lines.end(),
                                  [](const std::string& line) { return line.front() == ' '; });
  if (first.rfind(program, 0) == 0 || (deeper && GapIn(first) == std::string::npos)) {
    section->kind = FooterSection::Kind::kVerbatim;
  } else if (GapIn(first) != std::string::npos) {
    section->kind = FooterSection::Kind::kItems;
    for (const std::string& line : lines) AddItem(line, section);
    lines.clear();
  }
}

}  // namespace

Footer ParseFooter(const std::string& text, const std::string& program) {
  Footer footer;
  bool in_paragraph = false;
  for (const std::string& line : LinesOf(text)) {
    if (line.empty()) {
      in_paragraph = false;
    } else if (Indented(line) && !footer.sections.empty()) {
      footer.sections.back().lines.push_back(line.substr(2));
    } else if (line.back() == ':' && !in_paragraph) {
      footer.sections.push_back({line.substr(0, line.size() - 1), {}, {}, {}});
    } else if (in_paragraph) {
      footer.paragraphs.back() += " " + line;
    } else {
      footer.paragraphs.push_back(line);
      in_paragraph = true;
    }
  }
  for (FooterSection& section : footer.sections) FillSection(program, &section);
  return footer;
}

}  // namespace usage
