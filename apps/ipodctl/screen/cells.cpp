// SPDX-License-Identifier: MIT
// Measures by the C library's table of widths, as ncurses does.
#include "screen/cells.h"

#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <cwchar>

#include "console/text.h"

namespace ipodctl::screen {

namespace {

constexpr const char* kEllipsis = "…";

bool IsBetween(wchar_t character, wchar_t first, wchar_t last) {
  return character >= first && character <= last;
}

// Joiners, variation selectors and marks of direction: terminals disagree about what they do.
bool ActsOnOthers(wchar_t character) {
  return IsBetween(character, 0x200B, 0x200F) || IsBetween(character, 0x2028, 0x202E) ||
         IsBetween(character, 0x2060, 0x2069) || IsBetween(character, 0xFE00, 0xFE0F) ||
         character == 0xFEFF;
}

int WidthOf(wchar_t character) { return std::max(0, ::wcwidth(character)); }

int WidthOf(const std::wstring& text) {
  int width = 0;
  for (const wchar_t character : text) width += WidthOf(character);
  return width;
}

// The first characters of `text` that have room in `columns`.
std::wstring Beginning(const std::wstring& text, int columns) {
  std::wstring beginning;
  for (const wchar_t character : text) {
    columns -= WidthOf(character);
    if (columns < 0) break;
    beginning.push_back(character);
  }
  return beginning;
}

}  // namespace

void UseUtf8() {
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

std::string Harmless(const std::string& utf8) {
  constexpr wchar_t kReplacement = 0xFFFD;
  std::wstring harmless;
  for (const wchar_t character : Wide(Printable(utf8))) {
    if (ActsOnOthers(character)) continue;
    harmless.push_back(::wcwidth(character) < 0 ? kReplacement : character);
  }
  return Utf8(harmless.c_str());
}

int Width(const std::string& text) { return WidthOf(Wide(text)); }

std::string Cut(const std::string& text, int columns) {
  if (columns <= 0) return {};
  const std::wstring wide = Wide(text);
  if (WidthOf(wide) <= columns) return text;
  return Utf8(Beginning(wide, columns - 1).c_str()) + kEllipsis;
}

std::string Fit(const std::string& text, int columns) {
  const std::string cut = Cut(text, columns);
  return cut + std::string(static_cast<std::size_t>(std::max(0, columns - Width(cut))), ' ');
}

std::vector<std::string> Wrapped(const std::string& text, int columns) {
  std::vector<std::string> lines;
  std::wstring rest = Wide(text);
  while (columns > 1 && WidthOf(rest) > columns) {
    std::wstring line = Beginning(rest, columns);
    const std::size_t space = rest[line.size()] == L' ' ? line.size() : line.rfind(L' ');
    if (space != std::wstring::npos && space != 0) line.resize(space);
    rest.erase(0, line.size());
    rest.erase(0, rest.find_first_not_of(L' '));
    lines.push_back(Utf8(line.c_str()));
  }
  if (!rest.empty()) lines.push_back(Cut(Utf8(rest.c_str()), columns));
  return lines;
}

}  // namespace ipodctl::screen
