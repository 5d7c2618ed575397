// SPDX-License-Identifier: MIT
// Draws in the dots of Braille characters, of which each has two by four.
#include "screen/heart_curve.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "console/text.h"

namespace ipodctl::screen {

namespace {

constexpr int kDotColumns = 2;
constexpr int kDotRows = 4;
constexpr int kStepBpm = 20;  // the edges are multiples of it

// A grid of dots.
class Dots {
 public:
  Dots(int rows, int columns)
      : columns_(columns), cells_(static_cast<std::size_t>(rows * columns)) {}

  void Set(int x, int y) {
    constexpr std::uint8_t kBits[kDotRows][kDotColumns] = {{1, 8}, {2, 16}, {4, 32}, {64, 128}};
    const int cell = y / kDotRows * columns_ + x / kDotColumns;
    cells_[static_cast<std::size_t>(cell)] |= kBits[y % kDotRows][x % kDotColumns];
  }

  std::vector<std::string> Lines() const {
    constexpr wchar_t kBlank = 0x2800;
    std::vector<std::string> lines;
    const auto columns = static_cast<std::size_t>(columns_);
    for (std::size_t start = 0; start < cells_.size(); start += columns) {
      std::wstring line;
      for (std::size_t i = start; i < start + columns; ++i) {
        line.push_back(cells_[i] == 0 ? L' ' : static_cast<wchar_t>(kBlank + cells_[i]));
      }
      lines.push_back(Utf8(line.c_str()));
    }
    return lines;
  }

 private:
  int columns_;
  std::vector<std::uint8_t> cells_;
};

// The edges that all heart rates fit between.
std::optional<std::pair<int, int>> EdgesOf(const Recording& recording) {
  int lowest = 0;
  int highest = 0;
  for (const Reading& reading : recording.readings) {
    if (reading.bpm == 0) continue;
    lowest = lowest == 0 ? reading.bpm : std::min(lowest, reading.bpm);
    highest = std::max(highest, reading.bpm);
  }
  if (highest == 0) return std::nullopt;
  return std::pair(lowest / kStepBpm * kStepBpm, (highest / kStepBpm + 1) * kStepBpm);
}

}  // namespace

HeartCurve DrawHeartCurve(const Recording& recording, int seconds, int rows, int columns) {
  const auto edges = EdgesOf(recording);
  if (!edges || rows < 1 || columns < 1) return {};
  const auto [lowest, highest] = *edges;
  Dots dots(rows, columns);
  const int width = columns * kDotColumns;
  const int bottom = rows * kDotRows - 1;
  const int first_s = recording.readings.front().seconds;
  const int whole_s = std::max(1, recording.readings.back().seconds - first_s);
  int before = -1;  // the height of the dot to the left; -1: there is none
  for (int x = 0; x < width; ++x) {
    const double moment = first_s + static_cast<double>(whole_s) * x / width;
    if (moment > seconds) break;
    const int bpm = ReadingAt(recording, moment).bpm;
    if (bpm == 0) {
      before = -1;
      continue;
    }
    const int y = bottom - (bpm - lowest) * bottom / (highest - lowest);
    // Steep parts are filled, so that the curve has no holes.
    const int from = before < 0 ? y : before;
    dots.Set(x, y);
    for (int fill = std::min(from, y) + 1; fill < std::max(from, y); ++fill) dots.Set(x, fill);
    before = y;
  }
  return {lowest, highest, dots.Lines()};
}

}  // namespace ipodctl::screen
