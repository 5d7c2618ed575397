// SPDX-License-Identifier: MIT
// Keeps every piece inside of the frame.
#include "screen/frame.h"

#include <algorithm>

#include "console/text.h"
#include "screen/cells.h"

namespace ipodctl::screen {

namespace {

std::string Repeated(const char* character, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += character;
  return text;
}

// The cells of one line, each with the character that begins there; the second cell of a wide
// character is empty.
std::string Joined(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line += cell;
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

void Frame::Put(int row, int column, const std::string& text, Style style, int room) {
  room = std::min(room, columns_ - column);
  if (row < 0 || row >= rows_ || column < 0 || room <= 0) return;
  pieces_.push_back({row, column, Cut(Harmless(text), room), style});
}

Area Frame::Box(const Area& area, const std::string& title, const std::string& corner) {
  const int inner = area.columns - 2;
  const int last = area.row + area.rows - 1;
  const std::string edge = Repeated("─", inner);
  Put(area.row, area.column, "╭" + edge + "╮", Style::kBorder, area.columns);
  for (int row = area.row + 1; row < last; ++row) {
    Put(row, area.column, "│" + std::string(static_cast<std::size_t>(inner), ' ') + "│",
        Style::kBorder, area.columns);
  }
  Put(last, area.column, "╰" + edge + "╯", Style::kBorder, area.columns);
  const int title_room = inner - 4;
  Put(area.row, area.column + 2, " " + Cut(Harmless(title), title_room) + " ", Style::kStrong,
      title_room + 2);
  const std::string end = " " + Harmless(corner) + " ";
  const bool has_room = Width(Harmless(title)) + 2 + Width(end) + 3 <= inner;
  if (!corner.empty() && has_room) {
    Put(area.row, area.column + area.columns - 2 - Width(end), end, Style::kDim, Width(end));
  }
  return {area.row + 1, area.column + 2, area.rows - 2, area.columns - 4};
}

std::optional<Target> Frame::TargetAt(int row, int column) const {
  const auto hit =
      std::find_if(targets_.rbegin(), targets_.rend(),
                   [row, column](const Target& target) { return target.area.Has(row, column); });
  return hit == targets_.rend() ? std::nullopt : std::optional<Target>(*hit);
}

std::vector<std::string> Frame::Lines() const {
  const auto width = static_cast<std::size_t>(columns_);
  std::vector<std::vector<std::string>> cells(static_cast<std::size_t>(rows_),
                                              std::vector<std::string>(width, " "));
  for (const Piece& piece : pieces_) {
    std::vector<std::string>& line = cells[static_cast<std::size_t>(piece.row)];
    auto column = static_cast<std::size_t>(piece.column);
    for (const wchar_t character : Wide(piece.text)) {
      const std::string text = Utf8(std::wstring(1, character).c_str());
      const int taken = Width(text);
      if (taken == 0 && column != 0) line[column - 1] += text;
      for (int i = 0; i < taken; ++i) line[column++] = i == 0 ? text : "";
    }
  }
  std::vector<std::string> lines;
  lines.reserve(cells.size());
  for (const auto& line : cells) lines.push_back(Joined(line));
  return lines;
}

}  // namespace ipodctl::screen
